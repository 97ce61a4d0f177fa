// Windows only: writes platform/code_page_tables.cpp from the system's own decoding
// (MultiByteToWideChar), so that every build decodes 8-bit strings as Windows does.
// Usage, from the repository, in the Windows build's folder under Wine:
//   code_page_table_writer.exe OUTPUT.cpp
// The code page cross-check test compares the tables with the API on every run.
#include <windows.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/code_pages.h"

namespace {

// What the system makes of bytes: one unit, or 0xFFFFFFFF when it makes something else.
unsigned long Decode(unsigned codePage, const char* bytes, int count) {
  wchar_t units[4];
  const int made = MultiByteToWideChar(codePage, 0, bytes, count, units, 4);
  return made == 1 ? units[0] : 0xFFFFFFFFul;
}

std::string Hex(unsigned long unit) {
  char text[8];
  std::snprintf(text, sizeof text, "%04lX", unit);
  return text;
}

// Units as 4-digit hex, 32 to a line of string literals.
void WriteUnits(std::FILE* out, const std::vector<unsigned long>& units, const char* indent) {
  for (std::size_t i = 0; i < units.size(); i += 32) {
    std::fprintf(out, "%s\"", indent);
    for (std::size_t j = i; j < units.size() && j < i + 32; ++j) std::fprintf(out, "%s", Hex(units[j]).c_str());
    std::fprintf(out, "\"%s", i + 32 < units.size() ? "\n" : "");
  }
  if (units.empty()) std::fprintf(out, "%s\"\"", indent);
}

struct Table {
  unsigned codePage = 0;
  std::vector<unsigned long> highHalf;              // bytes 0x80 to 0xFF alone
  std::map<int, std::vector<unsigned long>> pairs;  // per lead byte, trail bytes 1 to 255
  unsigned long undefinedPair = 0x3F;
};

bool ReadTable(unsigned codePage, Table& table) {
  table.codePage = codePage;
  for (int byte = 0; byte < 256; ++byte) {
    const char one = static_cast<char>(byte);
    const unsigned long unit = Decode(codePage, &one, 1);
    if (unit == 0xFFFFFFFFul || (byte < 0x80 && unit != static_cast<unsigned long>(byte))) {
      std::fprintf(stderr, "code page %u: byte %02X is not one unit, or not ASCII below 0x80\n", codePage, byte);
      return false;
    }
    if (byte >= 0x80) table.highHalf.push_back(unit);
  }
  // What most pairs give is what an undefined pair gives.
  std::map<unsigned long, int> counts;
  for (int lead = 0x80; lead < 256; ++lead) {
    if (!IsDBCSLeadByteEx(codePage, static_cast<BYTE>(lead))) continue;
    std::vector<unsigned long>& row = table.pairs[lead];
    for (int trail = 1; trail < 256; ++trail) {
      const char two[2] = {static_cast<char>(lead), static_cast<char>(trail)};
      row.push_back(Decode(codePage, two, 2));
      if (row.back() == 0xFFFFFFFFul) {
        std::fprintf(stderr, "code page %u: %02X%02X is not one unit\n", codePage, lead, trail);
        return false;
      }
      ++counts[row.back()];
    }
  }
  int most = 0;
  for (const auto& count : counts)
    if (count.second > most) most = count.second, table.undefinedPair = count.first;
  return true;
}

void WriteTable(std::FILE* out, const Table& table) {
  if (!table.pairs.empty()) {
    std::fprintf(out, "const DoubleByteRow kRows%u[] = {\n", table.codePage);
    for (const auto& row : table.pairs) {
      std::size_t first = 0, end = row.second.size();
      while (first < end && row.second[first] == table.undefinedPair) ++first;
      while (end > first && row.second[end - 1] == table.undefinedPair) --end;
      if (first == end) first = end = 0;  // a lead byte without a pair it defines
      std::fprintf(out, "    {0x%02X, 0x%02X, %u,\n", row.first, static_cast<unsigned>(first + 1),
                   static_cast<unsigned>(end - first));
      WriteUnits(out, std::vector<unsigned long>(row.second.begin() + first, row.second.begin() + end), "     ");
      std::fprintf(out, "},\n");
    }
    std::fprintf(out, "};\n");
  }
  std::fprintf(out, "const char kHighHalf%u[] =\n", table.codePage);
  WriteUnits(out, table.highHalf, "    ");
  std::fprintf(out, ";\n\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: code_page_table_writer OUTPUT.cpp\n");
    return 2;
  }
  std::vector<Table> tables;
  for (unsigned codePage : hublet::TableCodePages()) {
    tables.emplace_back();
    if (!ReadTable(codePage, tables.back())) return 1;
  }
  std::FILE* out = std::fopen(argv[1], "wb");
  if (out == nullptr) return 1;
  std::fprintf(out,
               "// Written by tests/platform/code_page_table_writer.cpp from MultiByteToWideChar; do not\n"
               "// edit (docs/maintainers.md, \"Reading scene files\", says how to write it anew). Per code\n"
               "// page: what each byte from 0x80 up decodes to alone, and per lead byte what each trail\n"
               "// byte from the first listed decodes to with it, as 4-digit hex UTF-16 units; a pair past\n"
               "// the listed ones decodes to the code page's undefined-pair unit.\n"
               "#include \"platform/code_page_tables.h\"\n\n"
               "namespace hublet {\nnamespace {\n\n");
  for (const Table& table : tables) WriteTable(out, table);
  std::fprintf(out, "}  // namespace\n\nconst CodePageTable kCodePageTables[] = {\n");
  for (const Table& table : tables) {
    const unsigned c = table.codePage;
    if (table.pairs.empty())
      std::fprintf(out, "    {%u, kHighHalf%u, 0x%04lX, nullptr, 0},\n", c, c, table.undefinedPair);
    else
      std::fprintf(out, "    {%u, kHighHalf%u, 0x%04lX, kRows%u, sizeof kRows%u / sizeof kRows%u[0]},\n", c, c,
                   table.undefinedPair, c, c, c);
  }
  std::fprintf(out,
               "};\nconst std::size_t kCodePageTableCount = sizeof kCodePageTables / sizeof kCodePageTables[0];\n\n"
               "}  // namespace hublet\n");
  return std::fclose(out) == 0 ? 0 : 1;
}
