// Arbitrary bytes through the preference-file parser and its lookups alone, with no file
// and no session, so that the fuzzer reaches tens of thousands of inputs a second. The
// lookups ask for names the input itself holds (its first header and entries, so that
// they find something) and a key it may not. Every lookup must answer, a missing key
// with the default, within the plug-in's buffer, and a section in any ASCII case.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/ini_document.h"

namespace {

using hublet::IniDocument;
using hublet::IniLine;
using hublet::IniLineKind;

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

// The names asked for. They live across inputs, so that their buffers are allocated once.
struct Names {
  std::wstring section;
  std::wstring keys[3];
  std::size_t keyCount;
};

void Assign(const IniDocument& document, const IniLine& line, std::wstring& name) {
  name.resize(line.name.length);
  for (std::size_t i = 0; i < name.size(); ++i) name[i] = document.Unit(line.name.begin + i);
}

// Checks the walk and takes the names of the first header and the first two entries below it.
void Walk(const IniDocument& document, Names& names) {
  names.section = L"MYVIEW";  // without a header
  names.keyCount = 1;         // the last key is one the input may lack
  bool header = false;
  std::size_t last = 0;
  document.ForEachLine([&](const IniLine& line) {
    Require(line.number == last + 1 && line.number <= document.LineCount(), "a line out of order or past the count");
    Require(line.name.begin + line.name.length <= line.content.begin + line.content.length &&
                line.value.begin + line.value.length <= line.content.begin + line.content.length,
            "a name or value outside its line");
    last = line.number;
    if (line.kind == IniLineKind::Header && !header) {
      Assign(document, line, names.section);
      header = true;
    }
    if (line.kind == IniLineKind::Entry && header && names.keyCount < 3)
      Assign(document, line, names.keys[names.keyCount++ - 1]);
  });
  Require(last == document.LineCount(), "the walk and the line count disagree");
  names.keys[names.keyCount - 1] = L"FPS";
}

// The name with its ASCII letters' case flipped.
std::wstring Flipped(std::wstring name) {
  for (wchar_t& c : name)
    if ((c | 0x20) >= L'a' && (c | 0x20) <= L'z') c ^= 0x20;
  return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Names names;
  const IniDocument document = IniDocument::Parse(std::string(reinterpret_cast<const char*>(data), size));
  Walk(document, names);
  const std::wstring fallback = L"2.2";
  const std::wstring flipped = Flipped(names.section);
  for (std::size_t k = 0; k < names.keyCount; ++k) {
    const std::wstring& key = names.keys[k];
    const std::uint32_t number = document.LookupInt(names.section, key, -99);
    const std::wstring text = document.LookupText(names.section, key, fallback);
    Require(text.size() < 260, "a text longer than the plug-in's buffer");
    if (document.Find(names.section, key).line == 0)
      Require(number == static_cast<std::uint32_t>(-99) && text == fallback, "a missing key answered something");
    Require(document.LookupText(flipped, key, fallback) == text, "a section's case changed the answer");
  }
  return 0;
}
