// Put before the C library (LD_PRELOAD), makes every pread wait HUBLET_PREAD_DELAY_US
// microseconds (default 1000) first: a network share's round trip, for measuring how a
// reader of many files fares on one.
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

using Pread = ssize_t (*)(int, void*, size_t, off_t);

void Wait() {
  static const long delay = [] {
    const char* text = std::getenv("HUBLET_PREAD_DELAY_US");
    return text != nullptr ? std::atol(text) : 1000L;
  }();
  std::this_thread::sleep_for(std::chrono::microseconds(delay));
}

ssize_t Forward(const char* name, int fd, void* buffer, size_t count, off_t offset) {
  Wait();
  const Pread real = reinterpret_cast<Pread>(dlsym(RTLD_NEXT, name));
  return real(fd, buffer, count, offset);
}

}  // namespace

extern "C" ssize_t pread(int fd, void* buffer, size_t count, off_t offset) {
  return Forward("pread", fd, buffer, count, offset);
}

extern "C" ssize_t pread64(int fd, void* buffer, size_t count, off_t offset) {
  return Forward("pread64", fd, buffer, count, offset);
}
