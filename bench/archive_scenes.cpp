#include "bench/archive_scenes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace hublet {
namespace bench {

testing::CompoundImage ArchiveScene(int index) {
  using namespace testing;
  // As an archive holds them: stamped at 3ds Max's last save (by adavis4, on 14 November
  // 2023), on two machines; one in ten stale, stamped by anna before adavis4 saved it
  // without the plug-in.
  const std::u16string saver = index % 10 == 9  ? u"anna on RENDER07"
                               : index % 3 == 0 ? u"adavis4 on RENDER07"
                                                : u"adavis4 on WS12";
  const std::vector<RawProperty> stamp = {Utf16Property(2, u"14-11-2023"), Utf16Property(3, saver),
                                          Utf16Property(4, u"anna on RENDER07")};
  const std::uint32_t thumbnail = 24000 + 4096 * static_cast<std::uint32_t>(index % 12);
  const std::uint64_t scene = 300000 + 100000 * static_cast<std::uint64_t>(index % 9);
  return MaxSceneFile(SummarySet(MaxSummary(stamp, thumbnail)), scene);
}

bool WriteSparse(const std::string& path, const testing::CompoundImage& image) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return false;
  bool written = ::ftruncate(fd, static_cast<off_t>(image.size)) == 0;
  const std::string& bytes = image.bytes;
  for (std::size_t at = 0; written && at < bytes.size(); at += 4096) {
    const std::size_t count = std::min<std::size_t>(4096, bytes.size() - at);
    const auto block = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    if (std::all_of(block, block + static_cast<std::ptrdiff_t>(count), [](char byte) { return byte == '\0'; }))
      continue;
    written = ::pwrite(fd, bytes.data() + at, count, static_cast<off_t>(at)) == static_cast<ssize_t>(count);
  }
  return ::close(fd) == 0 && written;
}

}  // namespace bench
}  // namespace hublet
