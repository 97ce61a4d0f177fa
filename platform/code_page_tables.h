#pragma once
// The tables of the Windows code pages that 8-bit strings may be written in, as
// code_page_tables.cpp holds them (written from Windows' own decoding): UTF-16 units as
// 4-digit hex text, read where they are needed, so nothing is built before a string is
// decoded.
#include <cstddef>

namespace hublet {

// One lead byte's trail bytes, firstTrail and the count - 1 after it, a unit each.
struct DoubleByteRow {
  unsigned char lead;
  unsigned char firstTrail;
  unsigned char count;
  const char* units;
};

struct CodePageTable {
  unsigned codePage;
  const char* highHalf;       // bytes 0x80 to 0xFF alone; below 0x80 a byte is its own unit
  char16_t undefinedPair;     // a lead byte and a trail byte its row does not list
  const DoubleByteRow* rows;  // by lead byte, ascending; null in a single-byte code page
  std::size_t rowCount;
};

extern const CodePageTable kCodePageTables[];
extern const std::size_t kCodePageTableCount;

}  // namespace hublet
