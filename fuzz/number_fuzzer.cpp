// Arbitrary text through the two conversions of preference values: the profile API's
// whole-number reading and the gamma text's floating-point one. Both must answer for
// any text, and a whole number written plainly must read back as itself.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/ini_document.h"
#include "settings/settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hublet;
  std::wstring text;
  for (std::size_t i = 0; i + 1 < size; i += 2) text += static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
  (void)ParseGamma(text);
  const std::uint32_t number = ReadProfileInt(text).value;
  const std::wstring plain = std::to_wstring(static_cast<std::int32_t>(number));
  if (ReadProfileInt(plain).value != number) {
    std::fprintf(stderr, "invariant broken: %u does not read back\n", number);
    std::abort();
  }
  return 0;
}
