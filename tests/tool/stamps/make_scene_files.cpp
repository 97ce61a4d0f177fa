// Writes the scene files that the hublet stamps tests read: in scenes/, one of each status
// and the irregular stamps and savers worth a test, read alike by every build (shot040
// laid out as 3ds Max lays out its files, with what 3ds Max records beside a stamp); on POSIX
// also a file whose name is not UTF-8, and a folder tree with parts one cannot read.
// Usage: make_scene_files FOLDER (which holds scenes/shot010, shot020 and shot030)
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

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

// 3ds Max's own properties of a scene: its last saver (8, none when null), its creation
// (12) and its last save (13, none when 0).
struct MaxSave {
  const char* lastSavedBy;
  std::uint64_t created, lastSaved;
};

std::string MaxScene(const std::vector<RawProperty>& stamp, const MaxSave& save) {
  std::vector<RawProperty> properties;
  for (const RawProperty& property : MaxSummary(stamp)) {
    if (property.id == 8 && save.lastSavedBy != nullptr) properties.push_back(CodePageProperty(8, save.lastSavedBy));
    if (property.id == 12) properties.push_back(FileTimeProperty(12, save.created));
    if (property.id == 13 && save.lastSaved != 0) properties.push_back(FileTimeProperty(13, save.lastSaved));
    if (property.id != 8 && property.id != 12 && property.id != 13) properties.push_back(property);
  }
  return MaxSceneFile(SummarySet(properties)).FullBytes();
}

// FILETIMEs around the stamp date 3-7-2020: hours from 2020-07-03T00:00Z.
std::uint64_t July3(int hours, int minutes = 0) {
  const std::int64_t minutesFromMidnight = std::int64_t{hours} * 60 + minutes;
  return static_cast<std::uint64_t>(132382080000000000 + minutesFromMidnight * 600000000);
}

#ifndef _WIN32
// names/ holds a Latin-1 name, as a Windows share mounted without a character set shows
// it, and names.list names it; audit/ holds a folder that cannot be listed, one that can
// be listed but not entered, and a link to nothing.
bool WritePosixOnly(const std::string& folder, const std::string& stamped) {
  const std::string latin1 = folder + "/names/caf\xe9.max";
  const std::string audit = folder + "/audit";
  ::mkdir((folder + "/names").c_str(), 0755);
  ::mkdir(audit.c_str(), 0755);
  for (const char* locked : {"/locked", "/no-entry"}) {
    ::mkdir((audit + locked).c_str(), 0755);
    ::chmod((audit + locked).c_str(), 0755);  // a run before left it locked
  }
  ::unlink((audit + "/gone.max").c_str());
  const bool written = Write(latin1, stamped) && Write(folder + "/names.list", "names/caf\xe9.max\n") &&
                       Write(audit + "/ok.max", stamped) && Write(audit + "/locked/hidden.max", stamped) &&
                       Write(audit + "/no-entry/a.max", stamped) &&
                       ::symlink("nowhere.max", (audit + "/gone.max").c_str()) == 0;
  return written && ::chmod((audit + "/locked").c_str(), 0) == 0 && ::chmod((audit + "/no-entry").c_str(), 0444) == 0;
}
#endif

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
  const std::vector<RawProperty> annaStamp = Stamp(u"3-7-2020", u"anna on RENDER07", u"bob on WS12");
  const std::string stamped = Scene(Stamp(u"3-7-2020", u"anna on RENDER07", u"anna on RENDER07"));
  const struct {
    const char* name;
    std::string bytes;
  } files[] = {
      {"/scenes/shot010/anim.max", stamped},
      {"/scenes/shot010/light.max", Scene(Stamp(u"14-11-2026", u"bob on WS12", u"anna on RENDER07"))},
      {"/scenes/shot010/FX.MAX", Scene({CodePageIdProperty(65001), CodePageProperty(2, "29-2-2024"),
                                        CodePageProperty(3, "j\xc3\xb6rg on WS03"), CodePageProperty(4, "bob on WS12")})},
      {"/scenes/shot020/never.max", Scene({})},
      {"/scenes/shot020/by-hand.max", Scene({Utf16Property(2, u"Final"), Utf16Property(4, u"Studio")})},
      {"/scenes/shot020/partly.max", Scene({Utf16Property(2, u"05-11-2026")})},
      {"/scenes/shot020/notes.txt", "not a scene\n"},
      {"/scenes/shot020/text.max", "not a scene\n"},
      {"/scenes/shot020/no-summary.max", BuildCompoundFile({{u"Scene", "s", 0}}).FullBytes()},
      {"/scenes/shot020/cut.max", stamped.substr(0, 1500)},
      {"/scenes/shot020/loop.max", looping.FullBytes()},
      {"/scenes/shot030/no-on.max", Scene(Stamp(u"2-3-2025", u"anna@RENDER07", u"anna on RENDER07"))},
      {"/scenes/shot030/no-title.max", Scene({Utf16Property(3, u"bob on WS12"), Utf16Property(4, u"anna on RENDER07")})},
      // A quote and commas, which CSV must quote.
      {"/scenes/shot030/quoted.max", Scene(Stamp(u"1-4-2025", u"\"Ana, the boss\" on WS,07", u"anna on RENDER07"))},
      // Two saves by one saver on one day, and an older one after them.
      {"/scenes/shot030/day-a.max", Scene(Stamp(u"9-9-2025", u"cleo on WS05", u"bob on WS12"))},
      {"/scenes/shot030/day-b.max", Scene(Stamp(u"9-9-2025", u"cleo on WS05", u"anna on RENDER07"))},
      {"/scenes/shot030/day-c.max", Scene(Stamp(u"8-9-2025", u"cleo on WS05", u"cleo on WS05"))},
      // Saved by anna, who created it on 29 June; 3ds Max agrees with the stamp, in another
      // case, in the other script of her name, and with a user whose name holds " on ".
      {"/scenes/shot040/true.max", MaxScene(annaStamp, {"anna", July3(-96), July3(9, 15)})},
      {"/scenes/shot040/case.max", MaxScene(annaStamp, {"ANNA", July3(-96), July3(9, 15)})},
      {"/scenes/shot040/jorg.max", MaxScene(Stamp(u"3-7-2020", u"J\u00f6rg \u0141\u00f3d\u017a on WS03", u"x on y"),
                                            {"J\xc3\x96RG \xc5\x82\xc3\x93" "D\xc5\xb9", July3(-96), July3(9, 15)})},
      {"/scenes/shot040/shared.max", MaxScene(Stamp(u"3-7-2020", u"Sal on Set on WS09", u"x on y"),
                                              {"sal on set", July3(-96), July3(9, 15)})},
      // Saved near midnight UTC where the local date was the stamp's: at 00:30 on 3 July in
      // UTC+1, at 19:30 on 3 July in UTC-5.
      {"/scenes/shot040/midnight-before.max", MaxScene(annaStamp, {"anna", July3(-96), July3(0, -30)})},
      {"/scenes/shot040/midnight-after.max", MaxScene(annaStamp, {"anna", July3(-96), July3(24, 30)})},
      // Saved again two days later by the stamp's own account: the plug-in leaves its stamp
      // as it is while one saver saves again, so the stamp still holds.
      {"/scenes/shot040/resaved.max", MaxScene(annaStamp, {"anna", July3(-96), July3(48 + 10)})},
      // Saved since without the plug-in: by someone else; before the stamp's date (the date
      // typed or a clock wrong); both. Created long before the stamp, so that the creation
      // taken for the last save makes every one of them stale.
      {"/scenes/shot040/by-user.max", MaxScene(annaStamp, {"bob", July3(-96), July3(14)})},
      {"/scenes/shot040/date-before.max", MaxScene(annaStamp, {"anna", July3(-96), July3(-24, -1)})},
      {"/scenes/shot040/by-both.max", MaxScene(annaStamp, {"cleo", July3(-96), July3(-48, -5)})},
      // A property absent is no evidence: the other still is.
      {"/scenes/shot040/no-saver.max", MaxScene(annaStamp, {nullptr, July3(-96), July3(-48)})},
      {"/scenes/shot040/no-save-time.max", MaxScene(annaStamp, {"bob", July3(-96), 0})},
      // Never stamped: 3ds Max still says who saved it and when.
      {"/scenes/shot040/never.max", MaxScene({}, {"cleo", July3(-24 * 400), July3(-24 * 30 + 16)})},
      {"/empty/textures/wood.png", "not a scene\n"},
  };
  for (const auto& file : files) {
    if (!Write(folder + file.name, file.bytes)) {
      std::fprintf(stderr, "make_scene_files: cannot write %s%s\n", folder.c_str(), file.name);
      return 1;
    }
  }
#ifndef _WIN32
  if (!WritePosixOnly(folder, stamped)) {
    std::fprintf(stderr, "make_scene_files: cannot write the POSIX-only files under %s\n", folder.c_str());
    return 1;
  }
#endif
  return 0;
}
