// UTF-8 conversions and the operating-system services behind the plug-in.
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

#include <cstdio>
#include <string>

#include "platform/system.h"
#include "platform/wide_text.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

std::wstring Units(const std::u16string& text) { return std::wstring(text.begin(), text.end()); }

TEST(WideText, Utf8ToUtf16Units) {
  struct Row {
    std::string utf8;
    std::u16string units;
  };
  const Row rows[] = {
      {"", u""},
      {"ascii", u"ascii"},
      {"\xC3\xA9t\xC3\xA9 \xE2\x82\xAC", u"\u00E9t\u00E9 \u20AC"},
      {"\xF0\x9F\x98\x80", u"\U0001F600"},                  // two units
      {"a\xFF" "b", u"a\uFFFDb"},                             // never a lead byte
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                          // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},                // encoded surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},      // past U+10FFFF
      {"\xE2\x82" "A", u"\uFFFD" u"A"},                       // truncated: one U+FFFD
      {"\xF0\x9F\x98", u"\uFFFD"},                            // truncated at the end
  };
  for (const Row& row : rows) EXPECT_EQ(Units(row.units), Utf8ToWide(row.utf8)) << row.utf8;
}

TEST(WideText, Utf16UnitsToUtf8) {
  struct Row {
    std::u16string units;
    std::string utf8;
  };
  const Row rows[] = {
      {u"\u00E9\u20AC\U0001F600", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {u"a\xD83D" u"b", "a\xEF\xBF\xBD" "b"},  // lone high surrogate
      {u"\xDE00", "\xEF\xBF\xBD"},             // lone low surrogate
      {u"\xD83D", "\xEF\xBF\xBD"},             // high surrogate at the end
  };
  for (const Row& row : rows) EXPECT_EQ(row.utf8, WideToUtf8(Units(row.units)));
}

LocalDate IndependentToday() {
#ifdef _WIN32
  SYSTEMTIME now;
  ::GetLocalTime(&now);
  return LocalDate{now.wDay, now.wMonth, now.wYear};
#else
  LocalDate date{0, 0, 0};
  FILE* date_command = ::popen("date '+%d %m %Y'", "r");
  if (date_command == nullptr) return date;
  if (std::fscanf(date_command, "%d %d %d", &date.day, &date.month, &date.year) != 3) date = LocalDate{0, 0, 0};
  ::pclose(date_command);
  return date;
#endif
}

bool SameDate(const LocalDate& a, const LocalDate& b) {
  return a.day == b.day && a.month == b.month && a.year == b.year;
}

TEST(NativeSystem, AnswersSanely) {
  const std::unique_ptr<System> system = MakeNativeSystem();
  system->InitializeCom();
  system->StartSockets();
  EXPECT_FALSE(system->HostName().empty());
  EXPECT_LE(system->UserName().size(), 256u);
  system->ReleaseSockets();

  // Today's date against an independent reading (another API of the operating system),
  // taken on both sides, so a midnight in between only makes it try again.
  for (int attempt = 0; attempt < 3; ++attempt) {
    const LocalDate before = IndependentToday();
    const LocalDate today = system->Today();
    const LocalDate after = IndependentToday();
    if (!SameDate(before, after)) continue;
    EXPECT_TRUE(SameDate(today, before)) << today.day << "-" << today.month << "-" << today.year << " against "
                                         << before.day << "-" << before.month << "-" << before.year;
    break;
  }

  testing::ScratchFile file;
  file.Rewrite("[FLINT]\r\nBOXSAVE=0\r\n");
  EXPECT_EQ(0u, system->OpenProfile(file.path())->ReadInt(L"FLINT", L"BOXSAVE", 1));
}

}  // namespace
}  // namespace hublet
