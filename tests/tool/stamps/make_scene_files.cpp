// Writes the scene files that the hublet stamps tests read: one of each status, in two
// folders. Usage: make_scene_files FOLDER
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/compound_builder.h"

namespace {

using namespace hublet::testing;

const char16_t kSummary[] = u"\x0005SummaryInformation";

bool Write(const std::string& path, const std::string& bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

std::string Scene(const std::vector<RawProperty>& properties) {
  return BuildCompoundFile({{u"Scene", std::string(6000, 's'), 0}, {kSummary, SummarySet(properties), 0}}).FullBytes();
}

std::vector<RawProperty> Stamp(const std::u16string& date, const std::u16string& saver, const std::u16string& previous) {
  return {Utf16Property(2, date), Utf16Property(3, saver), Utf16Property(4, previous)};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_scene_files FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  // The stamp behind a long comment, where the damaged chain must be followed to reach it.
  std::vector<RawProperty> commented = Stamp(u"1-1-2020", u"x on y", u"x on y");
  commented.insert(commented.begin(), Utf16Property(6, std::u16string(3000, u'c')));
  CompoundImage looping = BuildCompoundFile({{kSummary, SummarySet(commented), 0}});
  PutLe32(looping.bytes, looping.FatEntryOffset(looping.streamStarts[0] + 1), looping.streamStarts[0]);
  const std::string stamped = Scene(Stamp(u"3-7-2020", u"anna on RENDER07", u"anna on RENDER07"));
  const struct {
    const char* name;
    std::string bytes;
  } files[] = {
      {"/shot010/anim.max", stamped},
      {"/shot010/light.max", Scene(Stamp(u"14-11-2026", u"bob on WS12", u"anna on RENDER07"))},
      {"/shot010/FX.MAX", Scene({CodePageIdProperty(65001), CodePageProperty(2, "29-2-2024"),
                                 CodePageProperty(3, "j\xc3\xb6rg on WS03"), CodePageProperty(4, "bob on WS12")})},
      {"/shot020/never.max", Scene({})},
      {"/shot020/by-hand.max", Scene({Utf16Property(2, u"Final"), Utf16Property(4, u"Studio")})},
      {"/shot020/partly.max", Scene({Utf16Property(2, u"05-11-2026")})},
      {"/shot020/notes.txt", "not a scene\n"},
      {"/shot020/text.max", "not a scene\n"},
      {"/shot020/no-summary.max", BuildCompoundFile({{u"Scene", "s", 0}}).FullBytes()},
      {"/shot020/cut.max", stamped.substr(0, 1500)},
      {"/shot020/loop.max", looping.FullBytes()},
  };
  for (const auto& file : files) {
    if (!Write(folder + file.name, file.bytes)) {
      std::fprintf(stderr, "make_scene_files: cannot write %s%s\n", folder.c_str(), file.name);
      return 1;
    }
  }
  return 0;
}
