#include "tool/stamps/stamps.h"

#include <cstdio>

#include "platform/byte_source.h"
#include "platform/wide_text.h"
#include "tool/common/calendar.h"
#include "tool/common/command_line.h"

namespace hublet {
namespace tool {
namespace {

// A number as "%i" prints it: digits without a leading zero.
bool TakeNumber(const std::wstring& text, std::size_t& at, int& value) {
  const std::size_t start = at;
  value = 0;
  while (at < text.size() && text[at] >= L'0' && text[at] <= L'9' && at - start < 5)
    value = value * 10 + (text[at++] - L'0');
  return at > start && text[start] != L'0';
}

bool IsMaxFile(const std::wstring& name) {
  if (name.size() < 4) return false;
  std::wstring end = name.substr(name.size() - 4);
  for (wchar_t& c : end)
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  return end == L".max";
}

std::string Irregularity(const SummaryInformation& info) {
  if (!info.title.isText) return info.title.present ? "the title is not text" : "no title";
  if (StampDateAsIso(info.title.value).empty()) return "the title is not a date written as D-M-YYYY";
  if (!info.subject.isText) return info.subject.present ? "the subject is not text" : "no subject";
  if (info.subject.value.find(L" on ") == std::wstring::npos) return "the subject is not \"USER on MACHINE\"";
  if (!info.author.isText) return info.author.present ? "the author is not text" : "no author";
  return std::string();
}

void Walk(const std::wstring& folder, const std::string& shown, bool allFiles, std::vector<SceneStamp>& stamps) {
  std::vector<DirectoryEntry> entries;
  std::string error;
  if (!ListDirectory(folder, entries, error)) {
    SceneStamp unreadable;
    unreadable.file = shown;
    unreadable.note = "cannot list the folder: " + error;
    stamps.push_back(unreadable);
    return;
  }
  for (const DirectoryEntry& entry : entries) {
    const std::string path = shown + "/" + WideToUtf8(entry.name);
    if (entry.kind == PathKind::kDirectory)
      Walk(folder + L"/" + entry.name, path, allFiles, stamps);
    else if (entry.kind == PathKind::kFile && (allFiles || IsMaxFile(entry.name)))
      stamps.push_back(JudgeStamp(path, ReadSummaryInformation(folder + L"/" + entry.name)));
  }
}

}  // namespace

const char* StampStatusName(StampStatus status) {
  switch (status) {
    case StampStatus::kStamped: return "stamped";
    case StampStatus::kNeverStamped: return "never-stamped";
    case StampStatus::kIrregular: return "irregular";
    case StampStatus::kNotCompoundFile: return "not-compound-file";
    case StampStatus::kNoSummaryInformation: return "no-summary-information";
    case StampStatus::kUnreadable: return "unreadable";
  }
  return "unreadable";
}

std::string StampDateAsIso(const std::wstring& text) {
  std::size_t at = 0;
  int day = 0, month = 0, year = 0;
  if (!TakeNumber(text, at, day) || at >= text.size() || text[at++] != L'-' || !TakeNumber(text, at, month) ||
      at >= text.size() || text[at++] != L'-' || !TakeNumber(text, at, year) || at != text.size() ||
      !IsCalendarDay(day, month, year))
    return std::string();
  char iso[40];
  std::snprintf(iso, sizeof iso, "%04d-%02d-%02d", year, month, day);
  return iso;
}

SceneStamp JudgeStamp(const std::string& file, const SummaryInformation& info) {
  SceneStamp stamp;
  stamp.file = file;
  stamp.note = info.reason;
  stamp.saver = info.subject;
  stamp.previous = info.author;
  stamp.savedAs = info.title;
  if (info.title.isText) stamp.saveDate = StampDateAsIso(info.title.value);
  switch (info.status) {
    case SummaryStatus::kNotCompoundFile: stamp.status = StampStatus::kNotCompoundFile; return stamp;
    case SummaryStatus::kNoSummaryInformation: stamp.status = StampStatus::kNoSummaryInformation; return stamp;
    case SummaryStatus::kUnreadable: stamp.status = StampStatus::kUnreadable; return stamp;
    case SummaryStatus::kRead: break;
  }
  stamp.note = Irregularity(info);
  if (!info.title.present && !info.subject.present)
    stamp.status = StampStatus::kNeverStamped;
  else
    stamp.status = stamp.note.empty() ? StampStatus::kStamped : StampStatus::kIrregular;
  if (stamp.status == StampStatus::kNeverStamped) stamp.note.clear();
  return stamp;
}

std::vector<SceneStamp> ReadStamps(const std::vector<std::string>& paths, bool allFiles) {
  std::vector<PathKind> kinds;
  for (const std::string& path : paths) {
    std::string whyMissing;
    kinds.push_back(KindOfPath(Utf8ToWide(path), whyMissing));
    if (kinds.back() == PathKind::kMissing) throw UsageError("no such file or folder: " + path);
  }
  std::vector<SceneStamp> stamps;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    std::string path = paths[i];
    if (kinds[i] == PathKind::kDirectory) {
      while (path.size() > 1 && (path.back() == '/' || path.back() == '\\')) path.pop_back();
      Walk(Utf8ToWide(path), path, allFiles, stamps);
    } else {
      // A file named is read whatever its name.
      stamps.push_back(JudgeStamp(path, ReadSummaryInformation(Utf8ToWide(path))));
    }
  }
  return stamps;
}

}  // namespace tool
}  // namespace hublet
