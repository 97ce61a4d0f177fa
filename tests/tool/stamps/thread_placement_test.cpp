#include "tool/stamps/thread_placement.h"

#include <gtest/gtest.h>

#ifdef __linux__
#include <pthread.h>
#include <sched.h>

#include <atomic>
#endif

namespace hublet {
namespace tool {
namespace {

#ifdef __linux__
// A thread started and placed with the given order: the processor chosen, the one the thread
// then ran on, whether it was set free again, and the calling thread's processor.
struct Placed {
  int chosen, ranOn;
  bool free;
  int caller;
};

Placed StartAndPlace(int order) {
  cpu_set_t allowed;
  EXPECT_EQ(::sched_getaffinity(0, sizeof allowed, &allowed), 0);
  for (;;) {
    std::atomic<bool> placed{false};
    std::atomic<int> ranOn{-1};
    std::thread thread([&] {
      while (!placed) {
      }
      ranOn = ::sched_getcpu();
    });
    const int before = ::sched_getcpu();
    const int chosen = StartOnItsOwnProcessor(thread, order);
    const int after = ::sched_getcpu();
    cpu_set_t mask;
    EXPECT_EQ(::pthread_getaffinity_np(thread.native_handle(), sizeof mask, &mask), 0);
    placed = true;
    thread.join();
    // Where the system moved the calling thread meanwhile, the order counted from elsewhere.
    if (before == after) return Placed{chosen, ranOn, CPU_EQUAL(&mask, &allowed) != 0, before};
  }
}

TEST(ThreadPlacement, AThreadStartsOnAnotherProcessorAndIsLeftFreeToMove) {
  cpu_set_t allowed;
  ASSERT_EQ(::sched_getaffinity(0, sizeof allowed, &allowed), 0);
  const int processors = CPU_COUNT(&allowed);
  if (processors < 2) GTEST_SKIP() << "one processor";
  for (const int order : {1, processors + 1}) {
    const Placed placed = StartAndPlace(order);
    EXPECT_NE(placed.chosen, placed.caller) << order;
    EXPECT_TRUE(placed.free) << order;
  }
  const Placed round = StartAndPlace(processors);
  EXPECT_EQ(round.chosen, round.caller);
  // Set free, a thread may be moved on at once on a busy machine; not every time.
  bool ranWherePlaced = false;
  for (int attempt = 0; attempt < 5 && !ranWherePlaced; ++attempt) {
    const Placed placed = StartAndPlace(1);
    ranWherePlaced = placed.ranOn == placed.chosen;
  }
  EXPECT_TRUE(ranWherePlaced);
}
#endif

}  // namespace
}  // namespace tool
}  // namespace hublet
