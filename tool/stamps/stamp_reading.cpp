#include "tool/stamps/stamp_reading.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace hublet {
namespace tool {
namespace {

SceneStamp UnreadableStamp(const WalkStep& step, const std::string& note, bool reached) {
  SceneStamp stamp;
  stamp.file = step.shown;
  stamp.reached = reached;
  stamp.status = StampStatus::kUnreadable;
  stamp.note = note;
  return stamp;
}

// Each thread takes the walk's next step, reads it, and hands back in order what is ready:
// no thread waits on another except when the oldest step still being read holds back a
// full window of steps behind it. Taking and handing back are short, under two locks.
class OrderedReading {
 public:
  OrderedReading(SceneWalk& walk, int jobs, const OpenBytes& open, const StepDone& done)
      : walk_(walk), jobs_(jobs), window_(2 * static_cast<std::size_t>(jobs)), open_(open), done_(done) {}

  void Run() {
    std::vector<std::thread> helpers;
    try {
      for (int i = 1; i < jobs_; ++i) helpers.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
      // The system gives no more threads: the ones it gave do the work.
    }
    Work();
    for (std::thread& helper : helpers) helper.join();
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  struct Slot {
    WalkStep step;
    SceneStamp stamp;
  };

  void Work() {
    try {
      for (;;) {
        Slot slot;
        std::size_t index = 0;
        if (!Take(slot.step, index)) return;
        if (slot.step.kind == WalkStep::Kind::kFile) slot.stamp = ReadStamp(slot.step, open_);
        HandBack(index, std::move(slot));
      }
    } catch (...) {
      // A failure (of the output, of memory): every thread stops, and the caller hears of it.
      std::lock_guard<std::mutex> lock(handBackMutex_);
      if (!failure_) failure_ = std::current_exception();
      stopping_ = true;
      windowMoved_.notify_all();
    }
  }

  bool Take(WalkStep& step, std::size_t& index) {
    {
      std::unique_lock<std::mutex> lock(handBackMutex_);
      windowMoved_.wait(lock, [this] { return stopping_ || taken_ < handedBack_ + window_; });
      if (stopping_) return false;
    }
    std::lock_guard<std::mutex> lock(walkMutex_);
    if (walkEnded_ || !walk_.Next(step)) {
      walkEnded_ = true;
      return false;
    }
    index = taken_++;
    return true;
  }

  void HandBack(std::size_t index, Slot slot) {
    std::lock_guard<std::mutex> lock(handBackMutex_);
    if (stopping_) return;
    ready_.emplace(index, std::move(slot));
    for (auto oldest = ready_.begin(); oldest != ready_.end() && oldest->first == handedBack_;
         oldest = ready_.erase(oldest), ++handedBack_)
      done_(oldest->second.step, oldest->second.stamp);
    windowMoved_.notify_all();
  }

  SceneWalk& walk_;
  const int jobs_;
  const std::size_t window_;
  const OpenBytes& open_;
  const StepDone& done_;
  std::mutex walkMutex_;     // walk_, walkEnded_
  bool walkEnded_ = false;
  std::atomic<std::size_t> taken_{0};  // steps taken from the walk
  std::mutex handBackMutex_;  // the rest
  std::condition_variable windowMoved_;
  std::map<std::size_t, Slot> ready_;  // read, waiting for an older step
  std::size_t handedBack_ = 0;
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

void ReadInWalkOrder(SceneWalk& walk, int jobs, const OpenBytes& open, const StepDone& done) {
  OrderedReading(walk, jobs, open, done).Run();
}

}  // namespace tool
}  // namespace hublet
