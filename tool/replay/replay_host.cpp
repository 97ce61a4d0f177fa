#include "tool/replay/replay_host.h"

#include <cstdlib>

#include "platform/wide_text.h"
#include "tool/common/calendar.h"
#include "tool/common/command_line.h"
#include "tool/common/shown_text.h"
#include "toolbar/toolbar.h"

namespace hublet {
namespace tool {
namespace {

using What = HostChange::What;

std::pair<std::string, std::string> SplitAt(const std::string& text, char separator, bool& found) {
  const std::size_t at = text.find(separator);
  found = at != std::string::npos;
  if (!found) return {text, std::string()};
  return {text.substr(0, at), text.substr(at + 1)};
}

int Viewport(const std::string& text, const std::string& what) {
  return ParseIntInRange(text, what, 0, SimHost::kViewportCount - 1);
}

std::uint32_t ParseClassIdPart(const std::string& text, const std::string& whole) {
  char* end = nullptr;
  const unsigned long long value = std::strtoull(text.c_str(), &end, 0);
  if (text.empty() || end != text.c_str() + text.size() || text[0] == '-' || value > 0xFFFFFFFFull)
    throw UsageError("renderer: " + QuotedArgument(whole) + " is not a class ID pair such as 0x73BAB286,0x77F8FD0C");
  return static_cast<std::uint32_t>(value);
}

void ParseRenderer(const std::string& text, HostChange& change) {
  change.present = true;
  if (text == "vray") {
    change.renderer = host::rendererGammaTargets[0];
  } else if (text == "vray-rt") {
    change.renderer = host::rendererGammaTargets[1];
  } else if (text == "scanline") {
    change.renderer = SimHost::kDefaultRenderer;
  } else if (text == "none") {
    change.present = false;
  } else {
    bool found = false;
    const auto parts = SplitAt(text, ',', found);
    if (!found) throw UsageError("the renderer must be vray, vray-rt, scanline, none or a class ID pair A,B");
    change.renderer = ClassId{ParseClassIdPart(parts.first, text), ParseClassIdPart(parts.second, text)};
  }
}

int PropertyId(const std::string& name) {
  if (name == "author") return host::kPropertyAuthor;
  if (name == "subject") return host::kPropertySubject;
  if (name == "title") return host::kPropertyTitle;
  throw UsageError("the property must be author, subject or title, not " + QuotedArgument(name));
}

void ParseProperty(const std::string& text, HostChange& change) {
  const auto parts = SplitAt(text, '=', change.present);
  change.number = PropertyId(parts.first);
  change.text = Utf8ToWide(parts.second);
}

// Twelve numbers, row by row, separated by commas: the three axes, then the translation.
void ParseViewTransform(const std::string& text, HostChange& change) {
  bool found = false;
  const auto parts = SplitAt(text, '=', found);
  if (!found) throw UsageError("view-transform takes I=X,Y,Z,... (twelve numbers, row by row)");
  change.viewport = Viewport(parts.first, "the viewport of view-transform");
  const char* next = parts.second.c_str();
  for (int i = 0; i < 12; ++i) {
    char* end = nullptr;
    change.transform.m[i / 3][i % 3] = std::strtof(next, &end);
    const char expected = i < 11 ? ',' : '\0';
    if (end == next || *end != expected)
      throw UsageError("view-transform: " + QuotedArgument(parts.second) + " is not twelve numbers separated by commas");
    next = end + 1;
  }
}

void ParseViewType(const std::string& text, HostChange& change) {
  bool found = false;
  const auto parts = SplitAt(text, '=', found);
  if (!found) throw UsageError("viewport-type takes I=T, e.g. 3=6");
  change.viewport = Viewport(parts.first, "the viewport of viewport-type");
  change.number = ParseInt32(parts.second, "the view type of viewport-type");
}

void ParseDirectory(const std::string& text, HostChange& change) {
  bool found = false;
  const auto parts = SplitAt(text, '=', found);
  if (!found) throw UsageError("dir takes NAME=TEXT, e.g. scripts=D:\\Max\\scripts (NAME: plugcfg, scripts or an ID)");
  if (parts.first == "plugcfg") {
    change.number = host::kDirPlugCfg;
  } else if (parts.first == "scripts") {
    change.number = host::kDirScripts;
  } else {
    try {
      change.number = ParseInt32(parts.first, "a directory ID");
    } catch (const UsageError&) {
      throw UsageError("the directory must be plugcfg, scripts or a directory ID (a whole number), not " +
                       QuotedArgument(parts.first));
    }
  }
  change.text = Utf8ToWide(parts.second);
}

void ParseDate(const std::string& text, HostChange& change) {
  const std::size_t first = text.find('-');
  const std::size_t second = first == std::string::npos ? first : text.find('-', first + 1);
  if (second == std::string::npos) throw UsageError("the date takes D-M-YYYY, e.g. 3-7-2020");
  const LocalDate date{ParseInt32(text.substr(0, first), "the day of the date"),
                       ParseInt32(text.substr(first + 1, second - first - 1), "the month of the date"),
                       ParseInt32(text.substr(second + 1), "the year of the date")};
  if (date.year < 1000 || date.year > 9999 || !IsCalendarDay(date.day, date.month, date.year))
    throw UsageError("the date " + QuotedArgument(text) + " is not a day of the calendar (D-M-YYYY, a four-digit year)");
  change.date = date;
}

}  // namespace

const std::vector<HostChangeName>& HostChangeNames() {
  static const std::vector<HostChangeName> kNames = {
      {"user", What::User, true, true},
      {"host", What::Machine, true, true},
      {"date", What::Date, true, true},
      {"time", What::Time, true, true},
      {"renderer", What::Renderer, true, true},
      {"property", What::Property, true, true},
      {"no-property", What::NoProperty, true, false},
      {"viewport-type", What::ViewType, true, true},
      {"view-transform", What::ViewTransform, true, true},
      {"active", What::ActiveViewport, true, true},
      {"no-shading-extension", What::NoShadingExtension, true, true},
      {"dir", What::Directory, true, true},
      {"ini", What::PreferenceFile, true, true},
      {"no-ini", What::PreferenceFile, false, false},
      {"toolbar-script", What::ToolbarScript, false, true},
      {"no-toolbar-script", What::ToolbarScript, false, false},
  };
  return kNames;
}

bool ParseHostChange(const std::string& name, const std::string* value, HostChange& change) {
  change = HostChange{};
  const HostChangeName* found = nullptr;
  for (const HostChangeName& n : HostChangeNames())
    if (name == n.name) found = &n;
  if (found == nullptr) return false;
  if (found->takesValue != (value != nullptr))
    throw UsageError(name + (found->takesValue ? " takes a value" : " takes no value"));
  change.what = found->what;
  change.present = found->present;
  if (!found->takesValue) return true;
  const std::string& text = *value;
  if (text.size() > kMaxValueBytes)
    throw UsageError(name + " takes at most " + std::to_string(kMaxValueBytes) + " bytes, not " +
                     std::to_string(text.size()));
  switch (change.what) {
    case What::User:
    case What::Machine:
      change.text = Utf8ToWide(text);
      break;
    case What::Date:
      ParseDate(text, change);
      break;
    case What::Time:
      change.number = ParseInt32(text, "the time");
      break;
    case What::Renderer:
      ParseRenderer(text, change);
      break;
    case What::Property:
      ParseProperty(text, change);
      break;
    case What::ViewType:
      ParseViewType(text, change);
      break;
    case What::NoProperty:
      change.number = PropertyId(text);
      break;
    case What::ViewTransform:
      ParseViewTransform(text, change);
      break;
    case What::ActiveViewport:
      change.number = Viewport(text, "the active viewport");
      break;
    case What::NoShadingExtension:
      change.viewport = Viewport(text, "the viewport of no-shading-extension");
      break;
    case What::Directory:
      ParseDirectory(text, change);
      break;
    case What::PreferenceFile:
      if (text.empty()) throw UsageError("ini takes a file name (no-ini removes the file)");
      change.given = text;
      break;
    case What::ToolbarScript:
      break;
  }
  return true;
}

void ReplayHostState::Apply(const HostChange& change) {
  SimHost& host = session_.host;
  SimSystem& system = session_.system;
  switch (change.what) {
    case What::User:
      system.userName = change.text;
      break;
    case What::Machine:
      system.hostName = change.text;
      break;
    case What::Date:
      system.today = change.date;
      break;
    case What::Time:
      host.SetTime(change.number);
      break;
    case What::Renderer:
      if (change.present)
        host.SetRenderer(change.renderer);
      else
        host.RemoveRenderer();
      break;
    case What::Property:
      if (change.present)
        host.SetProperty(host::kPropertySetSummary, change.number, change.text);
      else
        host.SetPropertyWithoutValue(host::kPropertySetSummary, change.number);
      break;
    case What::NoProperty:
      host.DeleteProperty(host::kPropertySetSummary, change.number);
      break;
    case What::ViewTransform:
      host.viewport(change.viewport).transform = change.transform;
      break;
    case What::ViewType: {
      SimView& view = host.viewport(change.viewport);
      view.type = change.number;
      if (view.type != host::kViewCamera) view.camera = nullptr;
      break;
    }
    case What::ActiveViewport:
      host.activeViewport = change.number;
      break;
    case What::NoShadingExtension:
      host.viewport(change.viewport).hasShadingExtension = false;
      break;
    case What::Directory:
      host.SetDirectory(change.number, change.text);
      break;
    case What::ToolbarScript:
      toolbarScript_ = change.present;
      break;
    case What::PreferenceFile:
      preferenceFile_ = change.present;
      preferencePath_ = change.path;
      preferenceGiven_ = change.given;
      break;
  }
  PlaceFiles();
  session_.transcript.Clear();
}

void ReplayHostState::PlaceFiles() {
  SimHost& host = session_.host;
  session_.system.RemoveFile(placedPreferenceFile_);
  placedPreferenceFile_ = session_.PreferenceFileHostPath();
  if (preferenceFile_)
    session_.UsePreferenceFile(preferencePath_);
  else
    session_.system.RemoveFile(placedPreferenceFile_);
  host.RemoveFile(placedToolbarScript_);
  placedToolbarScript_ = ToolbarScriptPath(host);
  if (toolbarScript_) host.AddFile(placedToolbarScript_);
}

ReplayHost ReplayHostState::Describe() const {
  const SimHost& host = session_.host;
  ReplayHost d;
  d.user = session_.system.userName;
  d.machine = session_.system.hostName;
  d.date = session_.system.today;
  d.time = host.Time();
  d.renderer = host.Renderer();
  for (int i = 0; i < SimHost::kViewportCount; ++i) {
    d.viewTypes.push_back(session_.host.viewport(i).type);
    d.shadingExtension.push_back(session_.host.viewport(i).hasShadingExtension);
    d.transforms.push_back(session_.host.viewport(i).transform);
  }
  d.activeViewport = host.activeViewport;
  for (const int id : {host::kPropertyAuthor, host::kPropertySubject, host::kPropertyTitle}) {
    if (host.HasProperty(host::kPropertySetSummary, id))
      d.properties.push_back({id, host.Property(host::kPropertySetSummary, id)});
  }
  for (const int id : {host::kDirPlugCfg, host::kDirScripts}) d.directories.push_back({id, host.DirectoryOf(id)});
  d.toolbarScript = toolbarScript_;
  d.preferenceFile = preferenceFile_ ? preferenceGiven_ : std::string();
  return d;
}

}  // namespace tool
}  // namespace hublet
