#pragma once
// Where a reading thread starts. Some Linux schedulers (seen on a virtual machine) start a
// thread on the processor of the thread that started it and leave it there for tens of
// milliseconds while another processor idles: two readers then take turns on one processor
// for a whole audit of a few thousand files in memory.
#include <thread>

namespace hublet {
namespace tool {

// Moves a thread just started to the order-th of the processors the calling thread may use,
// counted from its own (order 1 is the next one, wrapping round), then lets the system move
// it as it will; returns that processor. Does nothing and returns -1 where the system places
// threads by itself, or will not say which processors there are, or there is only one.
int StartOnItsOwnProcessor(std::thread& thread, int order);

}  // namespace tool
}  // namespace hublet
