#include "tool/stamps/stamp_reading.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "tool/stamps/thread_placement.h"

namespace hublet {
namespace tool {
namespace {

// Far longer than a file whose bytes are in memory takes to read (a few microseconds), and
// shorter than a round trip to a file server or a disk's seek: a read this slow waited on the
// storage, and another thread can wait beside it.
constexpr std::chrono::microseconds kWaitedRead(200);

// A read now and then is held up as long by the machine (a thread put aside for another); only
// reads that keep waiting, one after another on a thread, show storage that waits.
constexpr int kWaitsInARow = 3;

// Steps held at most, read or being read, beyond two a job: with fewer, one file slower than
// the rest (or a folder being listed) soon holds every other thread up.
constexpr std::size_t kLeastWindow = 32;

int Cores() { return std::max(1u, std::thread::hardware_concurrency()); }

SceneStamp UnreadableStamp(const WalkStep& step, const std::string& note, bool reached) {
  SceneStamp stamp;
  stamp.file = step.shown;
  stamp.reached = reached;
  stamp.status = StampStatus::kUnreadable;
  stamp.note = note;
  return stamp;
}

// Each thread takes the walk's next step, reads and prepares it, and leaves it in a ring of
// window slots; whichever thread finds the oldest step ready hands back, outside the lock,
// every step ready from there on, while the others read on. No thread waits on another except
// when the oldest step still being read holds back a full window behind it. Reading starts on a
// thread a core; reads that keep waiting on the storage start the rest, up to jobs: threads
// beyond the cores only help while reads wait, and on files in memory they would only take
// turns on the cores.
class OrderedReading {
 public:
  OrderedReading(SceneWalk& walk, int jobs, const OpenBytes& open, const PrepareStep& prepare, const StepDone& done)
      : walk_(walk),
        mostThreads_(jobs),
        window_(std::max(kLeastWindow, 2 * static_cast<std::size_t>(jobs))),
        open_(open),
        prepare_(prepare),
        done_(done),
        ring_(window_),
        ready_(window_, false) {
    for (std::unique_ptr<ReadStep>& slot : ring_) slot.reset(new ReadStep);
  }

  int Run() {
    AddThreads(Cores());
    Work();
    JoinHelpers();
    if (failure_) std::rethrow_exception(failure_);
    return threads_;
  }

 private:
  void Work() {
    try {
      // Steps move between the threads and the ring by pointer, so that a row's dozen strings
      // stay where they are.
      std::unique_ptr<ReadStep> read(new ReadStep);
      std::size_t index = 0;
      int waitsInARow = 0;
      while (Take(read->step, index)) {
        if (read->step.kind == WalkStep::Kind::kFile) {
          const auto start = std::chrono::steady_clock::now();
          read->stamp = ReadStamp(read->step, open_);
          if (std::chrono::steady_clock::now() - start <= kWaitedRead) {
            waitsInARow = 0;
          } else if (++waitsInARow == kWaitsInARow) {
            AddThreads(std::numeric_limits<int>::max());
          }
        } else {
          read->stamp =
              read->step.kind == WalkStep::Kind::kUnlistedFolder ? UnlistedFolderStamp(read->step) : SceneStamp();
        }
        read->text.clear();
        prepare_(*read);
        Leave(index, read);
      }
    } catch (...) {
      // A failure (of the output, of memory): every thread stops, and the caller hears of it.
      std::lock_guard<std::mutex> lock(mutex_);
      if (!failure_) failure_ = std::current_exception();
      stopping_ = true;
      room_.notify_all();
    }
  }

  // Threads up to count in all, at once: where starting a thread is slow (under Wine), a
  // thread at a time would hold the reads back.
  void AddThreads(int count) {
    std::lock_guard<std::mutex> lock(threadsMutex_);
    try {
      while (!threadsJoined_ && threads_ < std::min(count, mostThreads_)) {
        helpers_.emplace_back([this] { Work(); });
        StartOnItsOwnProcessor(helpers_.back(), threads_);
        ++threads_;
      }
    } catch (const std::system_error&) {
      // The system gives no more threads: the ones it gave do the work.
      mostThreads_ = threads_;
    }
  }

  // Helpers may start helpers until the last of them has ended.
  void JoinHelpers() {
    for (;;) {
      std::thread helper;
      {
        std::lock_guard<std::mutex> lock(threadsMutex_);
        if (helpers_.empty()) {
          threadsJoined_ = true;
          return;
        }
        helper = std::move(helpers_.back());
        helpers_.pop_back();
      }
      helper.join();
    }
  }

  // Every step taken has a slot: a thread takes a step only once the window has room for it,
  // and each thread holds one step at a time.
  bool Take(WalkStep& step, std::size_t& index) {
    {
      std::unique_lock<std::mutex> lock(mutex_);
      if (!stopping_ && reserved_ >= handedBack_ + window_) {
        ++waiting_;
        room_.wait(lock, [this] { return stopping_ || reserved_ < handedBack_ + window_; });
        --waiting_;
      }
      if (stopping_) return false;
      ++reserved_;
    }
    std::lock_guard<std::mutex> lock(walkMutex_);
    if (walkEnded_ || !walk_.Next(step)) {
      walkEnded_ = true;
      return false;
    }
    index = taken_++;
    return true;
  }

  void Leave(std::size_t index, std::unique_ptr<ReadStep>& read) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (stopping_) return;
    std::swap(ring_[index % window_], read);
    ready_[index % window_] = true;
    if (handingBack_) return;
    handingBack_ = true;
    while (!stopping_ && ready_[handedBack_ % window_]) {
      const std::size_t slot = handedBack_ % window_;
      std::swap(ring_[slot], read);
      ready_[slot] = false;
      ++handedBack_;
      // Threads waiting for room are woken once half the window is free, and outside the
      // lock: woken a step at a time, or into a lock still held, two threads the system has
      // put on one processor take turns at every step.
      const bool wake = waiting_ > 0 && reserved_ - handedBack_ <= window_ / 2;
      lock.unlock();
      if (wake) room_.notify_all();
      done_(*read);
      lock.lock();
    }
    handingBack_ = false;
  }

  SceneWalk& walk_;
  std::mutex threadsMutex_;  // helpers_, threads_, mostThreads_, threadsJoined_
  std::vector<std::thread> helpers_;
  int threads_ = 1;  // the calling thread and the helpers started
  int mostThreads_;
  bool threadsJoined_ = false;
  const std::size_t window_;
  const OpenBytes& open_;
  const PrepareStep& prepare_;
  const StepDone& done_;
  std::mutex walkMutex_;  // walk_, walkEnded_, taken_
  bool walkEnded_ = false;
  std::size_t taken_ = 0;  // steps taken from the walk
  std::mutex mutex_;       // the rest
  std::condition_variable room_;
  std::size_t reserved_ = 0;                     // steps threads have been allowed to take
  std::vector<std::unique_ptr<ReadStep>> ring_;  // step i waits in ring_[i % window_] until handed back
  std::vector<bool> ready_;
  std::size_t handedBack_ = 0;
  bool handingBack_ = false;  // a thread is handing back: steps are handed back one at a time
  int waiting_ = 0;           // threads waiting for room in the window
  bool stopping_ = false;
  std::exception_ptr failure_;
};

}  // namespace

SceneStamp ReadStamp(const WalkStep& file, const OpenBytes& open) {
  try {
    std::string error;
    const std::unique_ptr<ByteSource> bytes = open(file.path, error);
    if (!bytes) return UnreadableStamp(file, "cannot open the file: " + error, false);
    return JudgeStamp(file.shown, ReadSummaryFromBytes(*bytes));
  } catch (const std::exception& error) {
    // Memory running out on one file is that file's failure, not the audit's.
    return UnreadableStamp(file, error.what(), true);
  }
}

SceneStamp UnlistedFolderStamp(const WalkStep& folder) {
  SceneStamp stamp = UnreadableStamp(folder, "cannot list the folder: " + folder.reason, false);
  stamp.isFolder = true;
  return stamp;
}

int ReadInWalkOrder(SceneWalk& walk, int jobs, const OpenBytes& open, const PrepareStep& prepare,
                    const StepDone& done) {
  return OrderedReading(walk, jobs, open, prepare, done).Run();
}

}  // namespace tool
}  // namespace hublet
