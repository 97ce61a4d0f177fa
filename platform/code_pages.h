#pragma once
// 8-bit text in a Windows code page, decoded as Windows' MultiByteToWideChar decodes it,
// and the same on every system: UTF-8 (65001) by wide_text's decoder, the others by tables
// written from the Windows API (code_page_tables.cpp). Nothing is opened or built per
// string: the tables are constant data.
#include <string>
#include <vector>

namespace hublet {

// The code pages decoded by tables: the Windows ANSI code pages (874, 932, 936, 949, 950,
// 1250 to 1258), US-ASCII (20127) and ISO 8859-1 (28591).
std::vector<unsigned> TableCodePages();

// Whether CodePageToWide decodes the code page: 65001 or one of TableCodePages().
bool IsKnownCodePage(unsigned codePage);

// The bytes as UTF-16; throws std::runtime_error for a code page it does not know.
std::wstring CodePageToWide(unsigned codePage, const std::string& bytes);

}  // namespace hublet
