#include <iconv.h>

#include <cerrno>
#include <stdexcept>
#include <string>

#include "platform/summary_information.h"

namespace hublet {
namespace {

std::string IconvName(unsigned codePage) {
  if (codePage == 65001) return "UTF-8";
  if (codePage == 20127) return "ASCII";
  if (codePage >= 28591 && codePage <= 28599) return "ISO-8859-" + std::to_string(codePage - 28590);
  return "CP" + std::to_string(codePage);
}

}  // namespace

std::wstring CodePageToWide(unsigned codePage, const std::string& bytes) {
  const iconv_t converter = iconv_open("UTF-16LE", IconvName(codePage).c_str());
  if (converter == reinterpret_cast<iconv_t>(-1))
    throw std::runtime_error("the strings' code page " + std::to_string(codePage) + " is not known here");
  std::wstring text;
  std::string in = bytes;
  char* from = &in[0];
  std::size_t left = in.size();
  while (left > 0) {
    char units[256];
    char* to = units;
    std::size_t room = sizeof units;
    const std::size_t done = iconv(converter, &from, &left, &to, &room);
    for (char* p = units; p + 1 < to; p += 2)
      text += static_cast<wchar_t>(static_cast<unsigned char>(p[0]) | static_cast<unsigned char>(p[1]) << 8);
    if (done == static_cast<std::size_t>(-1) && errno != E2BIG) {
      // A byte the code page does not define, or a sequence cut short.
      text += L'\xFFFD';
      ++from;
      --left;
    }
  }
  iconv_close(converter);
  return text;
}

SummaryInformation ReadSummaryInformation(const std::wstring& path) { return ReadSummaryFromFile(path); }

}  // namespace hublet
