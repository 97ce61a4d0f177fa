#include "tool/stamps/thread_placement.h"

#ifdef __linux__
#include <pthread.h>
#include <sched.h>

#include <vector>
#endif

namespace hublet {
namespace tool {

#ifdef __linux__
int StartOnItsOwnProcessor(std::thread& thread, int order) {
  cpu_set_t allowed;
  if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return -1;
  std::vector<int> processors;
  for (int processor = 0; processor < CPU_SETSIZE; ++processor)
    if (CPU_ISSET(processor, &allowed)) processors.push_back(processor);
  if (processors.size() < 2) return -1;
  std::size_t here = 0;
  const int current = ::sched_getcpu();
  while (here < processors.size() && processors[here] != current) ++here;
  if (here == processors.size()) here = 0;
  const int target = processors[(here + static_cast<std::size_t>(order)) % processors.size()];
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(target, &one);
  // Confined to one processor, the thread is moved there at once; set free again, it stays
  // until the system has a reason to move it.
  if (::pthread_setaffinity_np(thread.native_handle(), sizeof one, &one) != 0) return -1;
  ::pthread_setaffinity_np(thread.native_handle(), sizeof allowed, &allowed);
  return target;
}
#else
// Windows spreads new threads over idle processors itself.
int StartOnItsOwnProcessor(std::thread&, int) { return -1; }
#endif

}  // namespace tool
}  // namespace hublet
