// The display operation runs inside every viewport redraw of the host. When no rule
// applies to the view it must not allocate: not with both switches off, and not with a
// switch on and a view type that switch leaves alone. This program replaces the global
// allocation functions to count every allocation made while a window is open.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "frame/hublet.h"
#include "harness/sim_session.h"

namespace {

bool g_counting = false;
std::size_t g_allocations = 0;

void* Allocate(std::size_t size) {
  if (g_counting) ++g_allocations;
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}

}  // namespace

// The nothrow forms call these by default, so replacing these counts them too.
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace hublet {
namespace testing {
namespace {

// A view as a host hands it to the callback: it answers its type and records nothing, so
// that any allocation counted is the plug-in's own.
class QuietView final : public View {
 public:
  int Type() override { return type; }
  bool IsPerspective() override { return type == 7 || type == 8; }
  Matrix43 AffineTransform() override { return IdentityMatrix(); }
  void SetAffineTransform(const Matrix43&) override {}
  bool HasShadingExtension() override { return false; }
  void SetShadingStyle(int) override {}
  void SetViewCamera(NodeRef) override {}
  int type = 0;
};

class DisplayAllocationTest : public ::testing::Test {
 protected:
  void SetUp() override { session.LoadAndStart(); }

  // Allocations made by one display call on a view of this type; -1 calls it without a view.
  std::size_t AllocationsOfDisplay(int viewType) {
    view.type = viewType;
    DisplayHandler& handler = *session.hublet;  // as the host calls it
    g_allocations = 0;
    g_counting = true;
    handler.OnDisplay(0, viewType < 0 ? nullptr : &view);
    g_counting = false;
    return g_allocations;
  }

  void SetSwitches(int persp, int ortho) {
    session.hublet->state.settings.forcePersp = persp;
    session.hublet->state.settings.forceOrtho = ortho;
  }

  SimSession session;
  QuietView view;
};

TEST_F(DisplayAllocationTest, ADisplayNoRuleActsOnNeverAllocates) {
  // Off, each rule alone, both, and values from a hand-edited file that are not 1.
  const int switches[][2] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {2, -1}};
  for (const auto& s : switches) {
    SetSwitches(s[0], s[1]);
    for (int type = -1; type < 18; ++type) {
      const bool fires = (s[0] == 1 && type == 6) || (s[1] == 1 && type == 7);
      if (fires) continue;
      EXPECT_EQ(AllocationsOfDisplay(type), 0u) << "switches " << s[0] << "/" << s[1] << ", view type " << type;
    }
  }
}

TEST_F(DisplayAllocationTest, TheCounterSeesAllocationsWhenARuleFires) {
  // Without this the zeros above could come from a counter that never counts: a rule that
  // fires asks the simulated host for a camera, and the host records it as text.
  SetSwitches(1, 0);
  EXPECT_GT(AllocationsOfDisplay(6), 0u);
}

}  // namespace
}  // namespace testing
}  // namespace hublet
