#include "platform/code_pages.h"

#include <algorithm>
#include <stdexcept>

#include "platform/code_page_tables.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

const unsigned kUtf8 = 65001;

char16_t UnitAt(const char* units, std::size_t index) {
  unsigned unit = 0;
  for (const char* digit = units + 4 * index; digit != units + 4 * index + 4; ++digit)
    unit = unit << 4 | static_cast<unsigned>(*digit <= '9' ? *digit - '0' : *digit - 'A' + 10);
  return static_cast<char16_t>(unit);
}

const CodePageTable* TableOf(unsigned codePage) {
  const CodePageTable* end = kCodePageTables + kCodePageTableCount;
  const CodePageTable* table = std::find_if(
      kCodePageTables, end, [codePage](const CodePageTable& candidate) { return candidate.codePage == codePage; });
  return table == end ? nullptr : table;
}

const DoubleByteRow* RowOf(const CodePageTable& table, unsigned char lead) {
  const DoubleByteRow* end = table.rows + table.rowCount;
  const DoubleByteRow* row = std::lower_bound(
      table.rows, end, lead, [](const DoubleByteRow& candidate, unsigned char byte) { return candidate.lead < byte; });
  return row != end && row->lead == lead ? row : nullptr;
}

}  // namespace

std::vector<unsigned> TableCodePages() {
  return {874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 20127, 28591};
}

bool IsKnownCodePage(unsigned codePage) { return codePage == kUtf8 || TableOf(codePage) != nullptr; }

std::wstring CodePageToWide(unsigned codePage, const std::string& bytes) {
  if (codePage == kUtf8) return Utf8ToWide(bytes);
  const CodePageTable* table = TableOf(codePage);
  if (table == nullptr)
    throw std::runtime_error("the strings' code page " + std::to_string(codePage) + " is not one this reader knows");
  std::wstring text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned char byte = static_cast<unsigned char>(bytes[i]);
    const DoubleByteRow* row = byte >= 0x80 && table->rows != nullptr ? RowOf(*table, byte) : nullptr;
    // As Windows does, a lead byte takes any byte after it as its trail, but a NUL.
    if (row != nullptr && i + 1 < bytes.size() && bytes[i + 1] != '\0') {
      const unsigned trail = static_cast<unsigned char>(bytes[++i]);
      const bool listed = trail >= row->firstTrail && trail - row->firstTrail < row->count;
      text += listed ? UnitAt(row->units, trail - row->firstTrail) : table->undefinedPair;
    } else {
      text += byte < 0x80 ? static_cast<char16_t>(byte) : UnitAt(table->highHalf, byte - 0x80u);
    }
  }
  return text;
}

}  // namespace hublet
