// Any bytes as a scene file through the portable reader of summary information (the
// reader hublet stamps uses off Windows): every input ends in a status, reads only inside
// the input (the sanitizers watch), and what it reports hangs together.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

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
  return 0;
}
