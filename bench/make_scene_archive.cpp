// Writes a studio's archive of scene files for measuring hublet stamps against other
// readers: COUNT files in folders of 100 (shot000/scene00000.max, ...), laid out as 3ds Max
// 2017 to 2023 lays them out (version 4, 4096-byte sectors, eleven streams, the summary
// information in regular sectors in the middle of the file, carrying a thumbnail and 3ds
// Max's own properties beside the plug-in's stamp). Scenes are 1 to 8 MiB; their zero
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

RawProperty Raw(std::uint32_t id, std::uint16_t type, const std::string& value) { return RawProperty{id, type, value}; }

std::string Le32(std::uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

// What 3ds Max writes (a code page, its last saver, times, a thumbnail of tens of KB) and
// the plug-in's three strings.
std::string SummaryFor(int index) {
  const std::u16string saver = index % 3 == 0 ? u"anna on RENDER07" : u"bob on WS12";
  const std::string filetime("\x00\x80\x3E\xD5\xDE\xB1\xDA\x01", 8);
  const std::uint32_t thumbnail = 24000 + 4096 * static_cast<std::uint32_t>(index % 12);
  return SummarySet({CodePageIdProperty(65001), Utf16Property(2, u"14-11-2026"), Utf16Property(3, saver),
                     Utf16Property(4, u"anna on RENDER07"), CodePageProperty(8, "anna"), CodePageProperty(9, "1"),
                     Raw(12, 64, filetime), Raw(13, 64, filetime),
                     Raw(17, 71, Le32(thumbnail + 4) + Le32(0xFFFFFFFF) + std::string(thumbnail, '\x7F')),
                     CodePageProperty(35, "{5F8A1C2E-0D3B-4C7A-9E61-2B4D8F0A3C17}"), CodePageProperty(37, "1.0")});
}

CompoundImage SceneFor(int index) {
  const std::uint64_t sceneSize = (std::uint64_t{1} << 20) * (1 + index % 8);
  return BuildCompoundFile(
      {{u"\x0005DocumentSummaryInformation", std::string(600, 'd'), 0},
       {u"ClassDirectory3", std::string(3000, 'k'), 0},
       {u"Config", std::string(2000, 'c'), 0},
       {u"DllDirectory", std::string(1500, 'l'), 0},
       {u"FileAssetMetaData3", std::string(1200, 'f'), 0},
       {u"SaveConfigData", std::string(700, 'v'), 0},
       {u"ScriptedCustAttribDefs", std::string(100, 'a'), 0},
       {u"VideoPostQueue", std::string(300, 'q'), 0},
       {u"ClassData", std::string(900, 'a'), 0},
       // The scene's first part, then the summary, then the rest of the scene as a hole.
       {u"Scene", std::string(4096, 's'), 200000},
       {u"\x0005SummaryInformation", SummaryFor(index), 0},
       {u"Scene2", std::string(4096, 's'), sceneSize}},
      4096);
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
