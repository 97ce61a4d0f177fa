// Arbitrary bytes through the preference-file parser and its lookups alone, with no file
// and no session, so that the fuzzer reaches tens of thousands of inputs a second. Every
// lookup must answer, a missing key with the default, and a section in any ASCII case.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/ini_document.h"

namespace {

const wchar_t* const kSections[] = {L"MYVIEW", L"myview", L"FLINT", L"S", L""};
const wchar_t* const kKeys[] = {L"FPS", L"fps", L"NUMVP", L"GAMMA", L"USE_VPL", L"K", L""};

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hublet;
  const IniDocument document = IniDocument::Parse(std::string(reinterpret_cast<const char*>(data), size));
  std::size_t last = 0;
  document.ForEachLine([&](const IniLine& line) {
    Require(line.number == last + 1 && line.number <= document.LineCount(), "a line out of order or past the count");
    Require(line.name.begin + line.name.length <= line.content.begin + line.content.length &&
                line.value.begin + line.value.length <= line.content.begin + line.content.length,
            "a name or value outside its line");
    last = line.number;
    (void)document.Text(line.name);
  });
  Require(last == document.LineCount(), "the walk and the line count disagree");
  for (const wchar_t* section : kSections)
    for (const wchar_t* key : kKeys) {
      const std::uint32_t number = document.LookupInt(section, key, -99);
      const std::wstring text = document.LookupText(section, key, L"2.2");
      Require(text.size() < 260, "a text longer than the plug-in's buffer");
      if (document.Find(section, key).line == 0)
        Require(number == static_cast<std::uint32_t>(-99) && text == L"2.2", "a missing key answered something");
    }
  for (const wchar_t* key : kKeys)
    Require(document.LookupText(L"MYVIEW", key, L"") == document.LookupText(L"myview", key, L""),
            "a section's case changed the answer");
  return 0;
}
