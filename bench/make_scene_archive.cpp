// Writes a studio's archive of scene files for measuring hublet stamps against other
// readers: COUNT files in folders of 100 (shot000/scene00000.max, ...), laid out as 3ds Max
// 2017 to 2023 lays them out (MaxSceneFile: the summary information with a thumbnail and
// 3ds Max's own properties beside the plug-in's stamp, after the scene's body). Their zero
// blocks are left as holes, so the archive takes little disk.
// Usage: make_scene_archive FOLDER COUNT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/compound_builder.h"

namespace {

using namespace hublet::testing;

// As 3ds Max writes a scene, with the plug-in's stamp; 0.3 to 1.1 MB.
CompoundImage SceneFor(int index) {
  const std::u16string saver = index % 3 == 0 ? u"anna on RENDER07" : u"bob on WS12";
  const std::vector<RawProperty> stamp = {Utf16Property(2, u"14-11-2026"), Utf16Property(3, saver),
                                          Utf16Property(4, u"anna on RENDER07")};
  const std::uint32_t thumbnail = 24000 + 4096 * static_cast<std::uint32_t>(index % 12);
  const std::uint64_t scene = 300000 + 100000 * static_cast<std::uint64_t>(index % 9);
  return MaxSceneFile(SummarySet(MaxSummary(stamp, thumbnail)), scene);
}

// The image with its all-zero blocks (and its zero end) left unwritten.
bool WriteSparse(const std::string& path, const CompoundImage& image) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return false;
  bool written = true;
  const std::size_t block = 4096;
  for (std::size_t at = 0; at < image.bytes.size() && written; at += block) {
    const std::string part = image.bytes.substr(at, block);
    if (part.find_first_not_of('\0') == std::string::npos) continue;
    written = ::pwrite(fd, part.data(), part.size(), static_cast<off_t>(at)) == static_cast<ssize_t>(part.size());
  }
  written = written && ::ftruncate(fd, static_cast<off_t>(image.size)) == 0;
  return ::close(fd) == 0 && written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || std::atoi(argv[2]) <= 0) {
    std::fprintf(stderr, "usage: make_scene_archive FOLDER COUNT\n");
    return 2;
  }
  const std::string folder = argv[1];
  const int count = std::atoi(argv[2]);
  if (::mkdir(folder.c_str(), 0755) != 0 && errno != EEXIST) {
    std::perror(folder.c_str());
    return 1;
  }
  for (int i = 0; i < count; ++i) {
    char shot[32], name[32];
    std::snprintf(shot, sizeof shot, "/shot%03d", i / 100);
    std::snprintf(name, sizeof name, "/scene%05d.max", i);
    if (i % 100 == 0 && ::mkdir((folder + shot).c_str(), 0755) != 0 && errno != EEXIST) {
      std::perror((folder + shot).c_str());
      return 1;
    }
    if (!WriteSparse(folder + shot + name, SceneFor(i))) {
      std::perror((folder + shot + name).c_str());
      return 1;
    }
  }
  return 0;
}
