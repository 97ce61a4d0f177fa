// Sections and keys: what is never read because of its name or place, and the known name
// the author probably meant.
#include <algorithm>
#include <cstdint>

#include "platform/wide_text.h"
#include "tool/check/check_jobs.h"
#include "tool/check/edit_distance.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

// Suggestions further away than this are more likely another word than a slip.
constexpr std::size_t kMaxSuggestionDistance = 2;
// Longer than any known name plus that distance, and than a per-view key of any index.
constexpr std::size_t kLongestComparedName = 64;
// A section's mask of name lengths has a bit for each length below this.
constexpr std::size_t kLengthBits = 64;

// A name the plug-in looks up, with the table row it belongs to.
struct KnownName {
  std::wstring folded;  // upper-case ASCII
  const PreferenceKey* key;
};

struct KnownSection {
  std::wstring name;
  std::wstring folded;
  std::vector<KnownName> names;
  std::uint64_t lengths;  // bit n: a name is n characters long
};

std::vector<KnownSection> KnownSections() {
  std::vector<KnownSection> sections;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    const std::wstring folded = FoldUpperAscii(key.section);
    auto it = std::find_if(sections.begin(), sections.end(),
                           [&](const KnownSection& s) { return s.folded == folded; });
    if (it == sections.end()) it = sections.insert(sections.end(), KnownSection{key.section, folded, {}, 0});
    const int views = key.kind == KeyKind::PerView ? kStoredViewCount : 1;
    for (int i = 0; i < views; ++i) {
      it->names.push_back({FoldUpperAscii(KeyName(key, i)), &key});
      it->lengths |= std::uint64_t(1) << it->names.back().folded.size();
    }
  }
  return sections;
}

// Upper case for comparison; names longer than any known one are neither folded nor
// compared, and give the empty name.
std::wstring Folded(const std::wstring& name) {
  return name.size() <= kLongestComparedName ? FoldUpperAscii(name) : std::wstring();
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

class NameChecker final : public LineCheck {
 public:
  explicit NameChecker(CheckContext& context)
      : context_(context), document_(context.document), known_(KnownSections()) {
    for (const KnownSection& section : known_) firstLines_.emplace_back(section.names.size() + 1, 0);
  }

  void Visit(const IniLine& line) override {
    if (line.kind == IniLineKind::Header) Header(line);
    if (line.kind == IniLineKind::Entry && current_ != known_.size()) Entry(line);
  }

 private:
  // The known section or name a span holds, or the count of them. Only names of the right
  // length are compared, which spares a file of a million short lines as many comparisons.
  std::size_t KnownSectionOf(IniSpan name) const {
    std::size_t s = 0;
    while (s < known_.size() && (known_[s].name.size() != name.length || !document_.NameIs(name, known_[s].name))) ++s;
    return s;
  }
  std::size_t KnownNameOf(IniSpan name) const {
    const std::vector<KnownName>& names = known_[current_].names;
    if (name.length >= kLengthBits || (known_[current_].lengths >> name.length & 1) == 0) return names.size();
    std::size_t n = 0;
    while (n < names.size() && (names[n].folded.size() != name.length || !document_.NameIs(name, names[n].folded))) ++n;
    return n;
  }

  void Header(const IniLine& line) {
    current_ = KnownSectionOf(line.name);
    if (current_ == known_.size()) {
      UnknownSection(line);
      return;
    }
    // A section's first line is kept after its known names' first lines.
    std::size_t& first = firstLines_[current_].back();
    if (first == 0) {
      first = line.number;
      return;
    }
    const std::wstring name = context_.Name(line.name);
    context_.Add(line.number, Severity::Error, "duplicate-section",
                 "[" + Shown(name) + "] appears again (first at line " + std::to_string(first) +
                     "): only the first header of a name is read, so the entries under this one are ignored",
                 name);
    current_ = known_.size();
  }

  void UnknownSection(const IniLine& line) {
    if (!context_.Keeps()) {
      context_.Count(Severity::Error);
      return;
    }
    const std::wstring name = context_.Name(line.name);
    const std::wstring near = Nearest(Folded(name), known_, [](const KnownSection& s) { return s.name; });
    std::string message = "unknown section [" + Shown(name) + "]: the plug-in reads nothing from it";
    if (!near.empty()) message += "; did you mean [" + Shown(near) + "]?";
    context_.Add(line.number, Severity::Error, "unknown-section", message, name, std::wstring(), near);
  }

  // An entry under the first header of a known section.
  void Entry(const IniLine& line) {
    const bool hash = line.name.length > 0 && document_.Unit(line.name.begin) == u'#';
    const std::size_t known = hash ? known_[current_].names.size() : KnownNameOf(line.name);
    std::size_t* const first = known < known_[current_].names.size() ? &firstLines_[current_][known] : nullptr;
    const std::size_t earlier = first != nullptr ? *first : 0;
    if (first != nullptr && earlier == 0) *first = line.number;
    if (first != nullptr && earlier == 0 && line.hasEquals) return;  // read as written
    // Past the kept diagnostics only the count matters: every finding below but a '#' line
    // is an error.
    if (!context_.Keeps()) {
      context_.Count(hash ? Severity::Warning : Severity::Error);
      return;
    }
    const std::wstring section = known_[current_].name;
    const std::wstring name = context_.Name(line.name);
    if (hash) {
      context_.Add(line.number, Severity::Warning, "hash-comment",
                   "a line starting with '#' is not a comment in this file (only ';' starts one): the reader "
                   "takes it as the key " + Quoted(name) + ", which nothing reads; start the line with ';'",
                   section, name);
    } else if (earlier != 0) {
      context_.Add(line.number, Severity::Error, "duplicate-key",
                   Quoted(name) + " appears again in [" + Shown(section) + "]: the reader uses the first, at line " +
                       std::to_string(earlier) + ", and ignores this one",
                   section, name);
    } else if (!line.hasEquals) {
      std::string message = Quoted(name) + " has no '=': ";
      message += first != nullptr ? "the reader answers the default, " + DefaultText(*known_[current_].names[known].key)
                                  : std::string("the reader takes it as a key without a value");
      context_.Add(line.number, Severity::Error, "no-equals", message, section, name);
    } else {
      UnknownKey(line.number, section, name);
    }
  }

  void UnknownKey(std::size_t line, const std::wstring& section, const std::wstring& name) {
    const std::wstring folded = Folded(name);
    for (const KnownSection& other : known_) {
      if (&other == &known_[current_] || FindKnown(other, folded) == nullptr) continue;
      context_.Add(line, Severity::Error, "wrong-section",
                   Quoted(name) + " is read from [" + Shown(other.name) + "], not from [" + Shown(section) + "]",
                   section, name, other.name);
      return;
    }
    if (const PreferenceKey* pattern = PerViewWithOtherIndex(folded)) {
      context_.Add(line, Severity::Error, "unknown-key",
                   Quoted(name) + " is not read: only viewports 0 to " + std::to_string(kStoredViewCount - 1) +
                       " have stored keys (" + WideToUtf8(KeyName(*pattern, 0)) + " to " +
                       WideToUtf8(KeyName(*pattern, kStoredViewCount - 1)) + ")",
                   section, name);
      return;
    }
    const std::wstring near = Nearest(folded, known_[current_].names, [](const KnownName& n) { return n.folded; });
    std::string message = "unknown key " + Quoted(name) + " in [" + Shown(section) + "]: the plug-in never reads it";
    if (!near.empty()) message += "; did you mean " + Quoted(near) + "?";
    context_.Add(line, Severity::Error, "unknown-key", message, section, name, near);
  }

  CheckContext& context_;
  const IniDocument& document_;
  const std::vector<KnownSection> known_;
  // Per known section: the line of each known name's first entry (0: none yet), then the
  // line of the section's first header.
  std::vector<std::vector<std::size_t>> firstLines_;
  // The known section whose first header the lines are under; known_.size() for any other.
  std::size_t current_ = known_.size();
};

}  // namespace

std::unique_ptr<LineCheck> NameCheck(CheckContext& context) {
  return std::unique_ptr<LineCheck>(new NameChecker(context));
}

}  // namespace tool
}  // namespace hublet
