// Writes the example scene files of examples/scenes/. They are laid out as 3ds Max 2017
// lays out its own: a version 4 compound file (4096-byte sectors) with the streams 3ds Max
// writes, summary information in code page 65001 holding what 3ds Max sets (last saved by,
// revision, created and saved times, and a thumbnail that makes the stream larger than a
// sector) and, where Hublet saved, its three stamps. Usage: make_example_scenes FOLDER
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/compound_builder.h"

namespace {

using namespace hublet::testing;

// UTC, as 3ds Max stores the created and saved times (VT_FILETIME).
RawProperty Time(std::uint32_t id, int year, int month, int day, int hour, int minute) {
  // Days since 1601-01-01, the first day of FILETIME, by the proleptic Gregorian calendar.
  const int y = month <= 2 ? year - 1 : year;
  const int era = y / 400, yearOfEra = y % 400;
  const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t days = std::int64_t{era} * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 +
                            dayOfYear - 584694;
  return FileTimeProperty(id, static_cast<std::uint64_t>((days * 24 + hour) * 60 + minute) * 600000000u);
}

// A small picture as a Windows clipboard DIB (VT_CF), the form of the scene's thumbnail.
RawProperty Thumbnail() {
  const std::uint32_t width = 48, height = 32, row = width * 3;
  std::string dib;
  for (std::uint32_t v : {40u, width, height}) Append32(dib, v);
  dib += std::string("\x01\x00\x18\x00", 4);  // one plane, 24 bits a pixel
  for (std::uint32_t v : {0u, row * height, 2835u, 2835u, 0u, 0u}) Append32(dib, v);
  for (std::uint32_t y = 0; y < height; ++y)
    for (std::uint32_t x = 0; x < width; ++x)
      dib += {static_cast<char>(96 + 3 * y), static_cast<char>(80 + 2 * x), static_cast<char>(64 + x + y)};
  std::string value;
  Append32(value, static_cast<std::uint32_t>(8 + dib.size()));
  Append32(value, 0xFFFFFFFF);  // a Windows clipboard format follows:
  Append32(value, 8);           // CF_DIB
  return RawProperty{17, 71, value + dib};
}

struct Save {
  const char* account;  // the Windows account: property 8, "last saved by"
  int created[5];       // year, month, day, hour, minute (UTC)
  int saved[5];
};

// UTF-8 text, English (United States): what both of 3ds Max's property sets begin with.
std::vector<RawProperty> CodePageAndLocale() {
  std::string locale;
  Append32(locale, 1033);
  return {CodePageIdProperty(65001), RawProperty{0x80000000u, 3, locale}};
}

std::vector<RawProperty> MaxProperties(const Save& save) {
  const int* c = save.created;
  const int* s = save.saved;
  std::vector<RawProperty> properties = CodePageAndLocale();
  properties.insert(properties.end(), {CodePageProperty(8, save.account),
          CodePageProperty(9, "1"),
          Time(12, c[0], c[1], c[2], c[3], c[4]),
          Time(13, s[0], s[1], s[2], s[3], s[4]),
          Thumbnail(),
          CodePageProperty(35, "{5E9B2C41-7A0D-4F3B-9C56-0B1D7E2A8F64}"),
          CodePageProperty(37, "1.0")});
  return properties;
}

// Title, subject and author as Hublet writes them (or as someone typed them).
std::vector<RawProperty> Stamped(const Save& save, const char* title, const char* subject, const char* author) {
  std::vector<RawProperty> properties = MaxProperties(save);
  properties.insert(properties.begin() + 2, {CodePageProperty(2, title), CodePageProperty(3, subject),
                                             CodePageProperty(4, author)});
  return properties;
}

std::string Scene(const std::vector<RawProperty>& summary) {
  // The document summary information: the same start under its own format ID.
  std::string document = SummarySet(CodePageAndLocale());
  document.replace(28, 16, "\x02\xD5\xCD\xD5\x9C\x2E\x1B\x10\x93\x97\x08\x00\x2B\x2C\xF9\xAE", 16);
  std::vector<CompoundStream> streams = {{u"Scene", "", 8192}};  // first, as in a saved scene
  for (const char16_t* name : {u"ClassData", u"ClassDirectory3", u"Config", u"DllDirectory", u"FileAssetMetaData3",
                               u"SaveConfigData", u"ScriptedCustAttribDefs", u"VideoPostQueue"})
    streams.push_back({name, "", 200});
  streams.push_back({u"\x0005SummaryInformation", SummarySet(summary), 0});
  streams.push_back({u"\x0005" u"DocumentSummaryInformation", document, 0});
  return BuildCompoundFile(streams, 4096).FullBytes();
}

bool Write(const std::string& path, const std::string& bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_example_scenes FOLDER\n");
    return 2;
  }
  const Save bruno = {"bruno", {2026, 9, 2, 7, 10}, {2026, 9, 14, 12, 5}};
  const Save anna = {"anna", {2026, 9, 10, 8, 30}, {2026, 9, 11, 15, 45}};
  const Save vendor = {"modeller", {2019, 3, 4, 9, 0}, {2019, 3, 4, 16, 20}};
  const Save lobby = {"anna", {2026, 8, 20, 9, 0}, {2026, 9, 1, 10, 15}};
  const Save corridor = {"bruno", {2026, 9, 3, 13, 0}, {2026, 9, 15, 18, 40}};
  const std::string lobbyScene = Scene(Stamped(lobby, "Final", "anna on RENDER07", "anna on RENDER07"));
  const struct {
    const char* name;
    std::string bytes;
  } files[] = {
      // Saved by Bruno after Anna: the stamp names both.
      {"kitchen.max", Scene(Stamped(bruno, "14-9-2026", "bruno on WS12", "anna on RENDER07"))},
      // Saved only by Anna: she is her own previous saver.
      {"kitchen_props.max", Scene(Stamped(anna, "11-9-2026", "anna on RENDER07", "anna on RENDER07"))},
      // Stamped by Anna, then saved by Bruno on a laptop without the plug-in: the stamp
      // still names Anna, 3ds Max names Bruno and a later day.
      {"corridor.max", Scene(Stamped(corridor, "9-9-2026", "anna on RENDER07", "bruno on WS12"))},
      // A bought model, never opened and saved here.
      {"armchair_vendor.max", Scene(MaxProperties(vendor))},
      // Stamped, then someone typed a title in File Properties.
      {"lobby.max", lobbyScene},
      // A copy that stopped part way: the summary information is not in it.
      {"lobby_copy.max", lobbyScene.substr(0, 5 * 4096)},
  };
  const std::string folder = argv[1];
  for (const auto& file : files) {
    if (!Write(folder + "/" + file.name, file.bytes)) {
      std::fprintf(stderr, "make_example_scenes: cannot write %s/%s\n", folder.c_str(), file.name);
      return 1;
    }
  }
  return 0;
}
