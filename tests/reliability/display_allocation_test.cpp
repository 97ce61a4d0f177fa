// The display operation runs inside every viewport redraw of the host. When no rule
// applies to the view it must not allocate: not with both switches off, and not with a
// switch on and a view type that switch leaves alone. This program replaces the global
// allocation functions to count every allocation made while a window is open.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "frame/hublet.h"
#include "host/sim/sim_session.h"

namespace {

bool g_counting = false;
std::size_t g_allocations = 0;

void* Allocate(std::size_t size) {
  if (g_counting) ++g_allocations;
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (g_counting) ++g_allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  if (g_counting) ++g_allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

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

  // Allocations made by one display call on a view of this type (or without a view).
  std::size_t AllocationsOfDisplay(int viewType, bool withView = true) {
    view.type = viewType;
    DisplayHandler& handler = *session.hublet;  // as the host calls it
    g_allocations = 0;
    g_counting = true;
    handler.OnDisplay(0, withView ? &view : nullptr);
    g_counting = false;
    return g_allocations;
  }

  void SetSwitches(int persp, int ortho) {
    session.hublet->settings.forcePersp = persp;
    session.hublet->settings.forceOrtho = ortho;
  }

  SimSession session;
  QuietView view;
};

TEST_F(DisplayAllocationTest, BothSwitchesOffNeverAllocates) {
  SetSwitches(0, 0);
  for (int type = 0; type < 18; ++type) EXPECT_EQ(AllocationsOfDisplay(type), 0u) << "view type " << type;
  EXPECT_EQ(AllocationsOfDisplay(0, false), 0u) << "no view";
}

TEST_F(DisplayAllocationTest, ASwitchOnWithAViewItLeavesAloneNeverAllocates) {
  for (int type = 0; type < 18; ++type) {
    SetSwitches(1, 0);
    if (type != 6) {
      EXPECT_EQ(AllocationsOfDisplay(type), 0u) << "forcePersp, view type " << type;
    }
    SetSwitches(0, 1);
    if (type != 7) {
      EXPECT_EQ(AllocationsOfDisplay(type), 0u) << "forceOrtho, view type " << type;
    }
    SetSwitches(1, 1);
    if (type != 6 && type != 7) {
      EXPECT_EQ(AllocationsOfDisplay(type), 0u) << "both, view type " << type;
    }
  }
  SetSwitches(1, 1);
  EXPECT_EQ(AllocationsOfDisplay(0, false), 0u) << "no view";
}

TEST_F(DisplayAllocationTest, SwitchesFromTheFileOtherThanOneNeverAllocate) {
  // The rules act on 1 only; a 2 from a hand-edited file leaves even their own views alone.
  SetSwitches(2, -1);
  EXPECT_EQ(AllocationsOfDisplay(6), 0u);
  EXPECT_EQ(AllocationsOfDisplay(7), 0u);
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
