#include "tool/check.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <map>
#include <memory>
#include <set>

#include "host/host_constants.h"
#include "host/sim/transcript.h"
#include "platform/wide_text.h"
#include "tool/edit_distance.h"

namespace hublet {
namespace tool {
namespace {

// Suggestions further away than this are more likely another word than a slip.
constexpr std::size_t kMaxSuggestionDistance = 2;

std::string Utf8(const std::wstring& text) { return WideToUtf8(text); }
std::string Quoted(const std::wstring& text) { return "\"" + Utf8(text) + "\""; }

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
template <class Range, class NameOf>
std::wstring Nearest(const std::wstring& folded, const Range& candidates, NameOf nameOf) {
  std::wstring best;
  std::size_t bestDistance = kMaxSuggestionDistance + 1;
  for (const auto& candidate : candidates) {
    const std::wstring name = nameOf(candidate);
    const std::size_t distance = EditDistance(folded, name);
    if (distance < bestDistance && distance < std::max(folded.size(), name.size())) {
      best = name;
      bestDistance = distance;
    }
  }
  return best;
}

// Whether folded is a per-view pattern filled with an index that has no stored keys
// ("VP4TYPE"); the pattern's name for the message when so.
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

std::string DefaultText(const PreferenceKey& key) {
  return key.kind == KeyKind::GammaText ? Quoted(key.defaultText) : std::to_string(key.defaultInt);
}

std::string FieldName(const PreferenceKey& key, int viewIndex) {
  std::string field = key.field;
  if (viewIndex >= 0) field += "[" + std::to_string(viewIndex) + "]";
  return field;
}

// A UTF-8 sequence of two to four bytes at bytes[i], valid and not overlong; its length
// or 0.
std::size_t Utf8SequenceAt(const std::string& bytes, std::size_t i, std::size_t end) {
  const unsigned char lead = static_cast<unsigned char>(bytes[i]);
  std::size_t length = 0;
  if (lead >= 0xC2 && lead <= 0xDF) length = 2;
  if (lead >= 0xE0 && lead <= 0xEF) length = 3;
  if (lead >= 0xF0 && lead <= 0xF4) length = 4;
  if (length == 0 || i + length > end) return 0;
  for (std::size_t k = 1; k < length; ++k)
    if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return 0;
  // The replacement character is what a decoder makes of garbage: not a real letter.
  const std::wstring decoded = Utf8ToWide(bytes.substr(i, length));
  return decoded.find(L'\xFFFD') == std::wstring::npos ? length : 0;
}

class Checker {
 public:
  Checker(const std::string& bytes, ProfileReader& reader)
      : bytes_(bytes), document_(IniDocument::Parse(bytes)), reader_(reader), known_(KnownSections()) {}

  CheckReport Run() {
    report_.encoding = document_.Encoding();
    report_.lineCount = document_.LineCount();
    ReadValues();
    if (CheckEncoding()) {
      CheckIgnoredLines();
      CheckSections();
      CheckValues();
      if (report_.encoding == IniEncoding::Ansi) CheckUtf8AsAnsi();
    }
    std::stable_sort(report_.diagnostics.begin(), report_.diagnostics.end(),
                     [](const Diagnostic& a, const Diagnostic& b) { return a.line < b.line; });
    return report_;
  }

 private:
  void Add(std::size_t line, Severity severity, const char* code, std::string message,
           const std::wstring& section = std::wstring(), const std::wstring& key = std::wstring(),
           const std::wstring& suggestion = std::wstring()) {
    report_.diagnostics.push_back(
        {line, severity, code, std::move(message), Utf8(section), Utf8(key), Utf8(suggestion)});
  }

  // Reads as the plug-in does: the start-up switches once, then each stage's keys.
  void ReadValues() {
    HubletSettings s{};
    LoadSettings(reader_, s);
    for (ReadWhen stage : {ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage})
      ReadPreferenceKeys(reader_, s, stage);
    settings_ = s;
    report_.layoutStage = s.useViewLayout != 0;
    report_.gammaStage = s.useGamma != 0;
    report_.frameRateStage = s.useFrameRate != 0;

    for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
      const PreferenceKey& key = kPreferenceKeys[k];
      const bool perView = key.kind == KeyKind::PerView;
      for (int i = 0; i < (perView ? kStoredViewCount : 1); ++i) {
        const std::wstring name = KeyName(key, perView ? i : 0);
        SettingValue value{&key, perView ? i : -1, Utf8(key.section), Utf8(name),
                           FieldName(key, perView ? i : -1), false, 0, 0.0f, std::string(), 0};
        switch (key.kind) {
          case KeyKind::Integer:
            value.intValue = s.*key.intField;
            break;
          case KeyKind::PerView:
            value.intValue = (s.*key.viewField)[i];
            break;
          case KeyKind::GammaText:
            value.isText = true;
            value.floatValue = s.*key.floatField;
            value.text = Utf8(reader_.ReadText(key.section, name, key.defaultText));
            break;
        }
        const IniEntry* entry = document_.Find(key.section, name);
        if (entry != nullptr && entry->hasEquals) value.line = entry->line;
        report_.settings.push_back(value);
      }
    }
  }

  // False when the reader sees nothing of the file's lines, so nothing else is worth
  // saying.
  bool CheckEncoding() {
    switch (report_.encoding) {
      case IniEncoding::Ansi:
      case IniEncoding::Utf16Le:
        return true;
      case IniEncoding::Utf8BomAsAnsi:
        Add(1, Severity::Error, "encoding",
            "the file starts with a UTF-8 byte-order mark, which Windows does not recognise: it "
            "reads the file as code page 1252, the mark's bytes become part of line 1 (a header "
            "there is lost) and non-ASCII text turns into mojibake; save it as ANSI or as UTF-16LE "
            "with a byte-order mark");
        return true;
      case IniEncoding::Utf16LeNoBom:
        Add(0, Severity::Error, "encoding",
            "the file looks like UTF-16LE without a byte-order mark: the reader takes it as code "
            "page 1252, where the NUL bytes cut every name short, so nothing in it is read; save it "
            "with a byte-order mark (FF FE)");
        return false;
      case IniEncoding::Utf16BeUnsupported:
        Add(0, Severity::Error, "encoding",
            "the file is UTF-16BE, which the Windows profile reader does not understand: nothing in "
            "it is read; save it as UTF-16LE with a byte-order mark or as ANSI");
        return false;
    }
    return true;
  }

  void CheckIgnoredLines() {
    for (const IniIgnoredLine& ignored : document_.IgnoredLines()) {
      switch (ignored.reason) {
        case IniIgnoreReason::Comment:
          break;  // meant to be ignored
        case IniIgnoreReason::BeforeFirstSection:
          Add(ignored.line, Severity::Error, "before-first-section",
              "this line comes before the first [section] header, where no lookup reaches it");
          break;
        case IniIgnoreReason::TextAfterHeader:
          Add(ignored.line, Severity::Warning, "text-after-header",
              "the text after the header's closing ']' is ignored (there are no trailing comments)");
          break;
        case IniIgnoreReason::TextAfterNul:
          Add(ignored.line, Severity::Error, "nul-byte",
              "a NUL byte ends the name or value early; the rest of the line is not read");
          break;
      }
    }
  }

  void CheckSections() {
    std::map<std::wstring, std::size_t> firstLine;
    for (const IniSection& section : document_.Sections()) {
      const std::wstring sectionName = document_.Name(section);
      const std::wstring folded = FoldUpperAscii(sectionName);
      const auto known = std::find_if(known_.begin(), known_.end(),
                                      [&](const KnownSection& s) { return s.folded == folded; });
      if (known == known_.end()) {
        const std::wstring near =
            Nearest(folded, known_, [](const KnownSection& s) { return s.name; });
        std::string message = "unknown section [" + Utf8(sectionName) + "]: the plug-in reads nothing from it";
        if (!near.empty()) message += "; did you mean [" + Utf8(near) + "]?";
        Add(section.line, Severity::Error, "unknown-section", message, sectionName, std::wstring(), near);
        continue;
      }
      const auto first = firstLine.emplace(folded, section.line);
      if (!first.second) {
        Add(section.line, Severity::Error, "duplicate-section",
            "[" + Utf8(sectionName) + "] appears again (first at line " + std::to_string(first.first->second) +
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

  void CheckEntry(const std::wstring& section, const KnownSection& known, const IniEntry& entry) {
    const std::wstring entryName = document_.Name(entry);
    const IniEntry* read = document_.Find(section, entryName);
    if (read != nullptr && read != &entry) {
      Add(entry.line, Severity::Error, "duplicate-key",
          Quoted(entryName) + " appears again in [" + Utf8(section) + "]: the reader uses the first, at line " +
              std::to_string(read->line) + ", and ignores this one",
          section, entryName);
      return;
    }
    const std::wstring folded = FoldUpperAscii(entryName);
    const KnownName* name = FindKnown(known, folded);
    if (!entry.hasEquals) {
      std::string message = Quoted(entryName) + " has no '=': ";
      message += name != nullptr ? "the reader answers the default, " + DefaultText(*name->key)
                                 : std::string("the reader takes it as a key without a value");
      Add(entry.line, Severity::Error, "no-equals", message, section, entryName);
      return;
    }
    if (name == nullptr) {
      UnknownKey(section, known, entry, folded);
      return;
    }
    if (name->key->kind == KeyKind::GammaText) return;  // checked with the values
    // Integers: the reader parses the text it would return.
    const std::wstring text = document_.LookupText(section, entryName, std::wstring());
    if (text.empty()) {
      Add(entry.line, Severity::Warning, "empty-value",
          Quoted(entryName) + " has an empty value: the reader answers the default, " + DefaultText(*name->key),
          section, entryName);
    } else if (std::none_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; })) {
      Add(entry.line, Severity::Warning, "not-an-integer",
          Quoted(entryName) + " = " + Quoted(text) + " holds no number: the plug-in reads 0",
          section, entryName);
    }
  }

  void UnknownKey(const std::wstring& section, const KnownSection& known, const IniEntry& entry,
                  const std::wstring& folded) {
    const std::wstring entryName = document_.Name(entry);
    for (const KnownSection& other : known_) {
      if (&other == &known || FindKnown(other, folded) == nullptr) continue;
      Add(entry.line, Severity::Error, "wrong-section",
          Quoted(entryName) + " is read from [" + Utf8(other.name) + "], not from [" + Utf8(section) + "]",
          section, entryName, other.name);
      return;
    }
    if (const PreferenceKey* pattern = PerViewWithOtherIndex(folded)) {
      Add(entry.line, Severity::Error, "unknown-key",
          Quoted(entryName) + " is not read: only viewports 0 to " + std::to_string(kStoredViewCount - 1) +
              " have stored keys (" + Utf8(KeyName(*pattern, 0)) + " to " +
              Utf8(KeyName(*pattern, kStoredViewCount - 1)) + ")",
          section, entryName);
      return;
    }
    const std::wstring near = Nearest(folded, known.names, [](const KnownName& n) { return n.folded; });
    std::string message = "unknown key " + Quoted(entryName) + " in [" + Utf8(section) + "]: the plug-in never reads it";
    if (!near.empty()) message += "; did you mean " + Quoted(near) + "?";
    Add(entry.line, Severity::Error, "unknown-key", message, section, entryName, near);
  }

  void CheckValues() {
    const SettingValue* persp = nullptr;
    const SettingValue* ortho = nullptr;
    for (const SettingValue& value : report_.settings) {
      const PreferenceKey& key = *value.key;
      const std::wstring section = key.section;
      const std::wstring name = Utf8ToWide(value.name);
      if (key.intField == &HubletSettings::forcePersp) persp = &value;
      if (key.intField == &HubletSettings::forceOrtho) ortho = &value;
      if (key.test == SwitchTest::ExactlyOne && value.intValue != 0 && value.intValue != 1) {
        Add(value.line, Severity::Warning, "switch-not-one",
            value.name + " = " + std::to_string(value.intValue) +
                ": the plug-in acts on this switch only when it is exactly 1, so it stays off",
            section, name);
      }
      if (key.kind == KeyKind::GammaText && value.line != 0) CheckGamma(value, section, name);
      if (key.intField == &HubletSettings::viewCount) CheckViewCount(value, section, name);
      if (key.viewField == &HubletSettings::viewType && value.viewIndex < SetUpViewports() &&
          (value.intValue < 0 || value.intValue >= host::kViewTypeCount)) {
        Add(value.line, Severity::Warning, "view-type-range",
            value.name + " = " + std::to_string(value.intValue) + " is not a view type (0 to " +
                std::to_string(host::kViewTypeCount - 1) +
                "): no view command runs, and the viewport keeps its current view for the rest of its setup",
            section, name);
      }
    }
    if (persp != nullptr && ortho != nullptr && persp->intValue == 1 && ortho->intValue == 1) {
      const SettingValue& later = persp->line > ortho->line ? *persp : *ortho;
      Add(later.line, Severity::Warning, "force-both",
          persp->name + " and " + ortho->name +
              " are both 1: a perspective view is first made orthographic and then, at the next "
              "redraw, a camera view",
          Utf8ToWide(later.section), Utf8ToWide(later.name));
    }
  }

  int SetUpViewports() const { return std::max(0, std::min(settings_.viewCount, kStoredViewCount)); }

  void CheckGamma(const SettingValue& value, const std::wstring& section, const std::wstring& name) {
    const std::wstring text = Utf8ToWide(value.text);
    wchar_t* end = nullptr;
    std::wcstod(text.c_str(), &end);
    const bool whole = !text.empty() && end == text.c_str() + text.size();
    if (whole && std::isfinite(value.floatValue)) return;
    std::string message = value.name + " = " + Quoted(text);
    if (end == text.c_str())
      message += " is not a number";
    else if (!whole)
      message += " is not only a number: the reading stops before the end";
    else
      message += " is not a finite number";
    message += "; the plug-in applies " + FormatFloat(value.floatValue);
    Add(value.line, Severity::Warning, "gamma-not-a-number", message, section, name);
  }

  void CheckViewCount(const SettingValue& value, const std::wstring& section, const std::wstring& name) {
    if (value.intValue >= 0 && value.intValue <= kStoredViewCount) return;
    const std::string what = value.intValue < 0 ? "no viewport is set up"
                                                : "only the " + std::to_string(kStoredViewCount) +
                                                      " viewports with stored keys are set up";
    Add(value.line, Severity::Warning, "view-count-range",
        value.name + " = " + std::to_string(value.intValue) + " is outside 0 to " +
            std::to_string(kStoredViewCount) + ": " + what,
        section, name);
  }

  // Non-ASCII bytes that form UTF-8: the author saved UTF-8, the reader decodes code page
  // 1252. One warning per line, showing what the first such character becomes; comments
  // are nobody's business.
  void CheckUtf8AsAnsi() {
    std::set<std::size_t> comments;
    for (const IniIgnoredLine& ignored : document_.IgnoredLines())
      if (ignored.reason == IniIgnoreReason::Comment) comments.insert(ignored.line);
    std::size_t line = 1;
    std::size_t i = 0;
    const std::size_t size = bytes_.size();
    while (i < size) {
      std::size_t end = i;
      while (end < size && bytes_[end] != '\r' && bytes_[end] != '\n') ++end;
      for (std::size_t k = i; k < end && comments.count(line) == 0; ++k) {
        const std::size_t length = Utf8SequenceAt(bytes_, k, end);
        if (length == 0) continue;
        const std::string sequence = bytes_.substr(k, length);
        const std::wstring asRead =
            IniDocument::Parse("[S]\nK=" + sequence).LookupText(L"S", L"K", std::wstring());
        Add(line, Severity::Warning, "utf8-as-ansi",
            "\"" + sequence + "\" is written in UTF-8, but a file without a byte-order mark is read as code page 1252: " +
                "the plug-in sees " + Quoted(asRead) + "; use ASCII or save as UTF-16LE with a byte-order mark");
        break;
      }
      i = end + 1;
      if (end + 1 < size && bytes_[end] == '\r' && bytes_[end + 1] == '\n') ++i;
      ++line;
    }
  }

  const std::string& bytes_;
  const IniDocument document_;
  ProfileReader& reader_;
  const std::vector<KnownSection> known_;
  HubletSettings settings_{};
  CheckReport report_;
};

}  // namespace

std::size_t CheckReport::Count(Severity severity) const {
  return static_cast<std::size_t>(std::count_if(diagnostics.begin(), diagnostics.end(),
                                                [severity](const Diagnostic& d) { return d.severity == severity; }));
}

CheckReport CheckPreferenceFile(const std::string& bytes, ProfileReader& reader) {
  return Checker(bytes, reader).Run();
}

CheckReport CheckPreferenceFile(const std::string& bytes) {
  IniDocumentReader reader(IniDocument::Parse(bytes));
  return CheckPreferenceFile(bytes, reader);
}

const char* EncodingId(IniEncoding encoding) {
  switch (encoding) {
    case IniEncoding::Ansi: return "ansi";
    case IniEncoding::Utf16Le: return "utf-16le";
    case IniEncoding::Utf8BomAsAnsi: return "utf-8-bom";
    case IniEncoding::Utf16LeNoBom: return "utf-16le-no-bom";
    case IniEncoding::Utf16BeUnsupported: return "utf-16be";
  }
  return "ansi";
}

const char* EncodingDescription(IniEncoding encoding) {
  switch (encoding) {
    case IniEncoding::Ansi: return "ANSI (code page 1252)";
    case IniEncoding::Utf16Le: return "UTF-16LE with byte-order mark";
    case IniEncoding::Utf8BomAsAnsi: return "UTF-8 with byte-order mark (read as code page 1252)";
    case IniEncoding::Utf16LeNoBom: return "UTF-16LE without byte-order mark (unreadable)";
    case IniEncoding::Utf16BeUnsupported: return "UTF-16BE (unreadable)";
  }
  return "ANSI (code page 1252)";
}

const char* ReadWhenId(ReadWhen when) {
  switch (when) {
    case ReadWhen::AtStart: return "start";
    case ReadWhen::LayoutStage: return "layout";
    case ReadWhen::GammaStage: return "gamma";
    case ReadWhen::FrameRateStage: return "frame-rate";
  }
  return "start";
}

}  // namespace tool
}  // namespace hublet
