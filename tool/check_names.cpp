// Sections and keys: what is never read because of its name or place, and the known name
// the author probably meant.
#include <algorithm>
#include <map>

#include "platform/wide_text.h"
#include "tool/check_jobs.h"
#include "tool/edit_distance.h"

namespace hublet {
namespace tool {
namespace {

// Suggestions further away than this are more likely another word than a slip.
constexpr std::size_t kMaxSuggestionDistance = 2;
// Longer than any known name plus that distance, and than a per-view key of any index.
constexpr std::size_t kLongestComparedName = 64;

// A name the plug-in looks up, with the table row it belongs to.
struct KnownName {
  std::wstring folded;  // upper-case ASCII
  const PreferenceKey* key;
};

struct KnownSection {
  std::wstring name;
  std::wstring folded;
  std::vector<KnownName> names;
};

std::vector<KnownSection> KnownSections() {
  std::vector<KnownSection> sections;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    const std::wstring folded = FoldUpperAscii(key.section);
    auto it = std::find_if(sections.begin(), sections.end(),
                           [&](const KnownSection& s) { return s.folded == folded; });
    if (it == sections.end()) it = sections.insert(sections.end(), KnownSection{key.section, folded, {}});
    const int views = key.kind == KeyKind::PerView ? kStoredViewCount : 1;
    for (int i = 0; i < views; ++i) it->names.push_back({FoldUpperAscii(KeyName(key, i)), &key});
  }
  return sections;
}

const KnownName* FindKnown(const KnownSection& section, const std::wstring& folded) {
  for (const KnownName& name : section.names)
    if (name.folded == folded) return &name;
  return nullptr;
}

// The nearest of candidates to folded, or empty when none is close; ties go to the first.
// Names whose lengths differ by more than the limit are never compared, so a huge name
// costs one pass over the candidates.
template <class Range, class NameOf>
std::wstring Nearest(const std::wstring& folded, const Range& candidates, NameOf nameOf) {
  std::wstring best;
  std::size_t bestDistance = kMaxSuggestionDistance + 1;
  for (const auto& candidate : candidates) {
    const std::wstring name = nameOf(candidate);
    const std::size_t longer = std::max(folded.size(), name.size());
    if (longer - std::min(folded.size(), name.size()) > kMaxSuggestionDistance) continue;
    const std::size_t distance = EditDistanceWithin(folded, name, bestDistance - 1);
    if (distance < bestDistance && distance < longer) {
      best = name;
      bestDistance = distance;
    }
  }
  return best;
}

// The per-view row whose pattern folded fills with an index that has no stored keys
// ("VP4TYPE"), or null.
const PreferenceKey* PerViewWithOtherIndex(const std::wstring& folded) {
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    if (key.kind != KeyKind::PerView) continue;
    const std::wstring pattern = FoldUpperAscii(key.name);
    const std::size_t at = pattern.find(L"%I");
    const std::wstring prefix = pattern.substr(0, at);
    const std::wstring suffix = pattern.substr(at + 2);
    if (folded.size() <= prefix.size() + suffix.size()) continue;
    if (folded.compare(0, prefix.size(), prefix) != 0) continue;
    if (folded.compare(folded.size() - suffix.size(), suffix.size(), suffix) != 0) continue;
    const std::wstring digits = folded.substr(prefix.size(), folded.size() - prefix.size() - suffix.size());
    if (std::all_of(digits.begin(), digits.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; }))
      return &key;
  }
  return nullptr;
}

class NameChecker {
 public:
  explicit NameChecker(CheckContext& context) : context_(context), document_(context.document), known_(KnownSections()) {}

  void Run() {
    std::map<std::wstring, std::size_t> firstLine;
    for (const IniSection& section : document_.Sections()) {
      const std::wstring sectionName = document_.Name(section);
      const std::wstring folded = FoldUpperAscii(sectionName);
      const auto known = std::find_if(known_.begin(), known_.end(),
                                      [&](const KnownSection& s) { return s.folded == folded; });
      if (known == known_.end()) {
        UnknownSection(section, sectionName, folded);
        continue;
      }
      const auto first = firstLine.emplace(folded, section.line);
      if (!first.second) {
        context_.Add(section.line, Severity::Error, "duplicate-section",
                     "[" + Shown(sectionName) + "] appears again (first at line " + std::to_string(first.first->second) +
                         "): only the first header of a name is read, so " +
                         (section.entryCount == 1 ? std::string("the entry")
                                                  : "the " + std::to_string(section.entryCount) + " entries") +
                         " under this one " + (section.entryCount == 1 ? "is" : "are") + " ignored",
                     sectionName);
        continue;
      }
      for (const IniEntry& entry : document_.Entries(section)) CheckEntry(sectionName, *known, entry);
    }
  }

 private:
  void UnknownSection(const IniSection& section, const std::wstring& sectionName, const std::wstring& folded) {
    const std::wstring near = Nearest(folded, known_, [](const KnownSection& s) { return s.name; });
    std::string message = "unknown section [" + Shown(sectionName) + "]: the plug-in reads nothing from it";
    if (!near.empty()) message += "; did you mean [" + Shown(near) + "]?";
    context_.Add(section.line, Severity::Error, "unknown-section", message, sectionName, std::wstring(), near);
  }

  void CheckEntry(const std::wstring& section, const KnownSection& known, const IniEntry& entry) {
    const std::wstring entryName = document_.Name(entry);
    // Past the kept diagnostics only the count matters, and every finding below a '#'
    // line is an error: the common cases are counted without building a message.
    if (!context_.Keeps() && (entryName.empty() || entryName[0] != L'#') && !IsKnownAndFirst(section, known, entry, entryName)) {
      context_.Count(Severity::Error);
      return;
    }
    if (!entryName.empty() && entryName[0] == L'#') {
      context_.Add(entry.line, Severity::Warning, "hash-comment",
                   "a line starting with '#' is not a comment in this file (only ';' starts one): the reader "
                   "takes it as the key " + Quoted(entryName) + ", which nothing reads; start the line with ';'",
                   section, entryName);
      return;
    }
    const IniEntry* read = document_.Find(section, entryName);
    if (read != nullptr && read != &entry) {
      context_.Add(entry.line, Severity::Error, "duplicate-key",
                   Quoted(entryName) + " appears again in [" + Shown(section) + "]: the reader uses the first, at line " +
                       std::to_string(read->line) + ", and ignores this one",
                   section, entryName);
      return;
    }
    // No known name is long: a huge one is neither folded nor compared.
    const std::wstring folded = entryName.size() <= kLongestComparedName ? FoldUpperAscii(entryName) : std::wstring();
    const KnownName* name = folded.empty() ? nullptr : FindKnown(known, folded);
    if (!entry.hasEquals) {
      std::string message = Quoted(entryName) + " has no '=': ";
      message += name != nullptr ? "the reader answers the default, " + DefaultText(*name->key)
                                 : std::string("the reader takes it as a key without a value");
      context_.Add(entry.line, Severity::Error, "no-equals", message, section, entryName);
      return;
    }
    if (name == nullptr) UnknownKey(section, known, entry, entryName, folded);
  }

  bool IsKnownAndFirst(const std::wstring& section, const KnownSection& known, const IniEntry& entry,
                       const std::wstring& entryName) const {
    return entry.hasEquals && document_.Find(section, entryName) == &entry &&
           entryName.size() <= kLongestComparedName && FindKnown(known, FoldUpperAscii(entryName)) != nullptr;
  }

  void UnknownKey(const std::wstring& section, const KnownSection& known, const IniEntry& entry,
                  const std::wstring& entryName, const std::wstring& folded) {
    for (const KnownSection& other : known_) {
      if (&other == &known || FindKnown(other, folded) == nullptr) continue;
      context_.Add(entry.line, Severity::Error, "wrong-section",
                   Quoted(entryName) + " is read from [" + Shown(other.name) + "], not from [" + Shown(section) + "]",
                   section, entryName, other.name);
      return;
    }
    if (const PreferenceKey* pattern = PerViewWithOtherIndex(folded)) {
      context_.Add(entry.line, Severity::Error, "unknown-key",
                   Quoted(entryName) + " is not read: only viewports 0 to " + std::to_string(kStoredViewCount - 1) +
                       " have stored keys (" + WideToUtf8(KeyName(*pattern, 0)) + " to " +
                       WideToUtf8(KeyName(*pattern, kStoredViewCount - 1)) + ")",
                   section, entryName);
      return;
    }
    const std::wstring near = Nearest(folded, known.names, [](const KnownName& n) { return n.folded; });
    std::string message = "unknown key " + Quoted(entryName) + " in [" + Shown(section) + "]: the plug-in never reads it";
    if (!near.empty()) message += "; did you mean " + Quoted(near) + "?";
    context_.Add(entry.line, Severity::Error, "unknown-key", message, section, entryName, near);
  }

  CheckContext& context_;
  const IniDocument& document_;
  const std::vector<KnownSection> known_;
};

}  // namespace

void CheckNames(CheckContext& context) { NameChecker(context).Run(); }

}  // namespace tool
}  // namespace hublet
