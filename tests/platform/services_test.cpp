// UTF-8 conversions and the operating-system services behind the plug-in.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <regex>
#include <string>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

#include "platform/system.h"
#include "platform/wide_text.h"
#include "tests/platform/escaped_text.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

TEST(WideText, ConvertsAsTheCasesFileSays) {
  static const std::regex row(R"((read|write) *\| *(.*?) *\| *(.*?) *\| *(.*))");
  std::ifstream in(HUBLET_WIDE_TEXT_CASES, std::ios::binary);
  int rows = 0;
  std::smatch m;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // a checkout with CR LF
    if (line.empty() || line[0] == '#') continue;
    ASSERT_TRUE(std::regex_match(line, m, row)) << line;
    ++rows;
    if (m[1] == "read") EXPECT_EQ(Utf8ToWide(testing::Bytes(m[2])), testing::Units(m[3])) << m[4];
    else EXPECT_EQ(WideToUtf8(testing::Units(m[2])), testing::Bytes(m[3])) << m[4];
  }
  EXPECT_GE(rows, 14) << "cannot read " HUBLET_WIDE_TEXT_CASES;
}

// Sets the process's time zone through TZ. Nothing else in these tests reads local time.
void UseTimeZone(const char* zone) {
#ifdef _WIN32
  _putenv_s("TZ", zone);
  _tzset();
#else
  setenv("TZ", zone, 1);
  tzset();
#endif
}

std::string Text(const LocalDate& date) {
  return std::to_string(date.day) + "-" + std::to_string(date.month) + "-" + std::to_string(date.year);
}

TEST(NativeSystem, LocalDateOfKnownInstants) {
  const struct {
    const char* zone;
    std::time_t instant;
    const char* date;
  } cases[] = {
      {"UTC0", 1593734399, "2-7-2020"},  // 2020-07-02 23:59:59 UTC
      {"UTC0", 1593734400, "3-7-2020"},  // a second later
      {"UTC0", 1582977600, "29-2-2020"},
      {"UTC0", 1609459199, "31-12-2020"},
      {"UTC0", 1609459200, "1-1-2021"},
      {"XYZ-14", 1593691200, "3-7-2020"},  // noon UTC on 2 July is past midnight at UTC+14
      {"XYZ+10", 1593734400, "2-7-2020"},  // and 14:00 the day before at UTC-10
  };
  for (const auto& c : cases) {
    UseTimeZone(c.zone);
    EXPECT_EQ(Text(LocalDateAt(c.instant)), c.date) << c.zone << " " << c.instant;
  }
}

TEST(NativeSystem, AnswersAsTheSystemDoes) {
  const std::unique_ptr<System> system = MakeNativeSystem();
  EXPECT_EQ(Text(system->Today()), Text(LocalDateAt(std::time(nullptr))));
  system->InitializeCom();
  system->StartSockets();
  // The host name's bytes, each the code unit of the same number.
  char host[256] = {};
  ASSERT_EQ(gethostname(host, sizeof host - 1), 0);
  std::wstring expected;
  for (const char* p = host; *p != '\0'; ++p) expected += static_cast<wchar_t>(static_cast<unsigned char>(*p));
  EXPECT_EQ(system->HostName(), expected);
  system->ReleaseSockets();
#ifndef _WIN32
  // The login's account, or without one the effective user's.
  const char* login = getlogin();
  const passwd* user = getpwuid(geteuid());
  ASSERT_TRUE((login != nullptr && *login != '\0') || user != nullptr);
  EXPECT_EQ(system->UserName(), Utf8ToWide(login != nullptr && *login != '\0' ? login : user->pw_name));
#else
  EXPECT_FALSE(system->UserName().empty());
#endif

  testing::ScratchFile file;
  file.Rewrite("[FLINT]\r\nBOXSAVE=0\r\n");
  EXPECT_EQ(0u, system->OpenProfile(file.path())->ReadInt(L"FLINT", L"BOXSAVE", 1));
}

}  // namespace
}  // namespace hublet
