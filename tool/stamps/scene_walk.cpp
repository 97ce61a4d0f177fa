#include "tool/stamps/scene_walk.h"

#include <utility>

namespace hublet {
namespace tool {
namespace {

bool IsMaxFile(const std::wstring& name) {
  if (name.size() < 4) return false;
  const wchar_t* end = name.data() + name.size() - 4;
  for (int i = 0; i < 4; ++i) {
    const wchar_t c = end[i] >= L'A' && end[i] <= L'Z' ? static_cast<wchar_t>(end[i] - L'A' + L'a') : end[i];
    if (c != L".max"[i]) return false;
  }
  return true;
}

bool IsSeparator(wchar_t c) { return c == L'/' || c == L'\\'; }

std::wstring Join(const std::wstring& folder, const std::wstring& name) {
  return !folder.empty() && IsSeparator(folder.back()) ? folder + name : folder + L"/" + name;
}

WalkStep Step(WalkStep::Kind kind, std::wstring path, const std::string& reason = std::string()) {
  WalkStep step;
  step.kind = kind;
  step.shown = ShownPath(path);
  step.path = std::move(path);
  step.reason = reason;
  return step;
}

}  // namespace

bool SceneWalk::Next(WalkStep& step) {
  while (!folders_.empty()) {
    Folder& folder = folders_.back();
    if (folder.next == folder.entries.size()) {
      folders_.pop_back();
      continue;
    }
    const DirectoryEntry& entry = folder.entries[folder.next++];
    if (entry.kind == PathKind::kDirectory) {
      if (Enter(Join(folder.path, entry.name), step)) continue;
    } else if (allFiles_ || IsMaxFile(entry.name)) {
      // Anything else by that name (a link to nothing, a pipe) is read too, and the
      // reading says why it fails.
      step = Step(WalkStep::Kind::kFile, Join(folder.path, entry.name));
    } else {
      continue;
    }
    foundInNamedFolder_ = true;
    return true;
  }
  if (walkingNamedFolder_) {
    walkingNamedFolder_ = false;
    if (!foundInNamedFolder_) {
      step = WalkStep();
      step.kind = WalkStep::Kind::kNoSceneFiles;
      step.shown = namedFolder_;
      return true;
    }
  }
  return NextNamed(step);
}

bool SceneWalk::NextNamed(WalkStep& step) {
  std::string named;
  if (listEnded_) return false;
  if (!paths_.Next(named)) {
    listEnded_ = true;
    if (paths_.error().empty()) return false;
    step = WalkStep();
    step.kind = WalkStep::Kind::kUnreadableList;
    step.reason = paths_.error();
    return true;
  }
  std::wstring path = WidePath(named);
  if (named.find('\0') != std::string::npos) {
    step = Step(WalkStep::Kind::kUnreadablePath, path, "a path cannot hold a NUL byte");
    return true;
  }
  std::string whyMissing;
  switch (KindOfPath(path, whyMissing)) {
    case PathKind::kMissing:
      step = Step(WalkStep::Kind::kUnreadablePath, path, whyMissing);
      return true;
    case PathKind::kDirectory:
      while (path.size() > 1 && IsSeparator(path.back())) path.pop_back();
      if (!Enter(path, step)) return true;
      walkingNamedFolder_ = true;
      foundInNamedFolder_ = false;
      namedFolder_ = ShownPath(path);
      return Next(step);
    case PathKind::kFile:
    case PathKind::kOther:
      // A file named is read whatever its name.
      break;
  }
  step = Step(WalkStep::Kind::kFile, path);
  return true;
}

bool SceneWalk::Enter(const std::wstring& folder, WalkStep& step) {
  Folder entered = {folder, std::vector<DirectoryEntry>(), 0};
  std::string error;
  if (!ListDirectory(folder, entered.entries, error)) {
    step = Step(WalkStep::Kind::kUnlistedFolder, folder, error);
    return false;
  }
  folders_.push_back(std::move(entered));
  return true;
}

}  // namespace tool
}  // namespace hublet
