// Any bytes as a scene file through the reader of summary information that hublet stamps
// uses: every input ends in a status, reads only inside the input (the sanitizers watch),
// and what it reports hangs together, its times shown as ISO 8601 text or not at all.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/file_time.h"
#include "platform/summary_information.h"

namespace {

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

void CheckText(const hublet::SummaryText& text, bool read) {
  Require(read || !text.present, "a property reported from a set that was not read");
  Require(text.present || (!text.isText && text.value.empty()), "text for a property that is absent");
  Require(text.isText || text.value.empty(), "text for a property that holds none");
}

void CheckTime(const hublet::FileTime& time, bool read) {
  Require(read || !time.present, "a time reported from a set that was not read");
  Require(time.present || (!time.isTime && time.ticks == 0), "a time for a property that is absent");
  Require(time.isTime || time.ticks == 0, "ticks for a property that holds none");
  const std::string text = hublet::FileTimeToIso8601(time.ticks);
  Require(text.empty() || (text.size() == 20 && text[10] == 'T' && text[19] == 'Z'), "a time not in ISO 8601");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hublet;
  MemoryBytes bytes(std::string(reinterpret_cast<const char*>(data), size));
  const SummaryInformation info = ReadSummaryFromBytes(bytes);
  const bool read = info.status == SummaryStatus::kRead;
  Require((info.status == SummaryStatus::kUnreadable) != info.reason.empty(), "a reason exactly when unreadable");
  CheckText(info.title, read);
  CheckText(info.subject, read);
  CheckText(info.author, read);
  CheckText(info.lastSavedBy, read);
  CheckTime(info.created, read);
  CheckTime(info.lastSaved, read);
  return 0;
}
