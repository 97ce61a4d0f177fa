// Session files as editors save them: each encoding and line end gives the same lines at
// the same numbers, and anything else is a mistake told with its file and line.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/wide_text.h"
#include "tests/support/scratch_file.h"
#include "tool/common/command_line.h"
#include "tool/common/file_access.h"
#include "tool/replay/session_file.h"

namespace hublet {
namespace tool {
namespace {

using ::testing::HasSubstr;

// Each line that holds something as "NUMBER: WORD | WORD".
std::string Lines(const std::string& bytes) {
  std::string out;
  ForEachSessionLine(SessionText(bytes, "s"), "s", [&out](const SessionLine& line) {
    out += (out.empty() ? "" : ", ") + std::to_string(line.number) + ":";
    for (std::size_t i = 0; i < line.words.size(); ++i) out += (i == 0 ? " " : " | ") + line.words[i];
  });
  return out;
}

std::string Utf16(const std::string& ascii, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

// The mistake a file holds, as the message names it.
std::string Mistake(const std::string& bytes) {
  try {
    Lines(bytes);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "no mistake";
}

TEST(SessionFile, EveryEncodingAndLineEndGivesTheSameLines) {
  const std::string expected = "2: --user | bob, 4: save";
  const std::string lf = "# a day\n--user   bob\n\n  save\t\n";
  EXPECT_EQ(Lines(lf), expected);
  EXPECT_EQ(Lines("# a day\r\n--user   bob\r\n\r\n  save\t\r\n"), expected);
  EXPECT_EQ(Lines("# a day\r--user   bob\r\r  save\t"), expected);
  EXPECT_EQ(Lines("\xEF\xBB\xBF" + lf), expected);
  EXPECT_EQ(Lines(Utf16("# a day\r\n--user   bob\r\n\r\n  save\t\r\n", false)), expected);
  EXPECT_EQ(Lines(Utf16("# a day\r--user   bob\r\r  save\t\r", true)), expected);
  // Non-ASCII text survives the conversion from UTF-16: U+00E9 and U+1F600 (a pair).
  EXPECT_EQ(Lines(std::string("\xFF\xFEu\0:\0\xE9\0\x3D\xD8\x00\xDE", 12)), "1: u:\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(SessionFile, AnOptionSplitsAtItsFirstBlankUnlessAnEqualsSignComesFirst) {
  EXPECT_EQ(Lines("--property=author=anna on RENDER07\n"), "1: --property=author=anna on RENDER07");
  EXPECT_EQ(Lines("--property author=anna on RENDER07\n"), "1: --property | author=anna on RENDER07");
  EXPECT_EQ(Lines("dir:scripts=D:\\My Scripts\\\n#x y\n--bare\n"), "1: dir:scripts=D:\\My Scripts\\, 3: --bare");
}

TEST(SessionFile, OtherBytesAreMistakesWithTheirLine) {
  EXPECT_THAT(Mistake(std::string("-\0-\0", 4)), HasSubstr("UTF-16 without a byte-order mark"));
  EXPECT_THAT(Mistake(Utf16("save\n", false) + "x"), HasSubstr("half a character"));
  EXPECT_THAT(Mistake(Utf16("save\nsave\r\nx", false) + std::string("\x00\xD8", 2)), HasSubstr("s:3: half of a UTF-16"));
  EXPECT_THAT(Mistake(Utf16("save\rsave\r\nx", true) + std::string("\xDC\x00", 2)), HasSubstr("s:3: half of a UTF-16"));
  EXPECT_THAT(Mistake(std::string("save\nini:a\0b.ini\n", 17)), HasSubstr("s:2: a NUL byte"));
  EXPECT_THAT(Mistake("save\r\nuser:J\xF6rg\r\n"), HasSubstr("s:2: the line is not UTF-8"));
  const std::string longest = "user:" + std::string(kMaxSessionLineBytes - 5, 'x');
  EXPECT_EQ(Lines(longest + "\n"), "1: " + longest);
  const std::string huge = Mistake("save\nuser:" + std::string(kMaxSessionLineBytes, 'x') + "\n");
  EXPECT_THAT(huge, HasSubstr("s:2: the line is longer than 4096 bytes"));
  EXPECT_LT(huge.size(), 200u);
}

// A file read until its bytes tell the mistake of a line too long, no further; the mistake is
// the one the whole file tells. UTF-16 is read whole.
TEST(SessionFile, ReadingStopsAtALineTooLong) {
  const std::string whole = "save\n" + std::string(4u << 20, 'x') + "\nsave\n";
  const std::string utf16 = Utf16("save\n" + std::string(100000, 'x'), false);
  for (const std::string& contents : {whole, "\xEF\xBB\xBF" + whole, utf16}) {
    const testing::ScratchFile file(contents);
    std::string bytes, error;
    ASSERT_TRUE(ReadFileBytes(WideToUtf8(file.path()), bytes, error, SessionReadEnough())) << error;
    EXPECT_EQ(Mistake(bytes), Mistake(contents));
    if (contents == utf16)
      EXPECT_EQ(bytes, utf16);
    else
      EXPECT_LE(bytes.size(), 2u * 65536u);
  }
  // A longest line, after UTF-8's mark, is no reason to stop.
  std::string longest = "\xEF\xBB\xBFuser:" + std::string(kMaxSessionLineBytes - 5, 'x') + "\n";
  for (int i = 0; i < 40000; ++i) longest += "save\n";
  const testing::ScratchFile file(longest);
  std::string bytes, error;
  ASSERT_TRUE(ReadFileBytes(WideToUtf8(file.path()), bytes, error, SessionReadEnough())) << error;
  EXPECT_EQ(bytes, longest);
}

}  // namespace
}  // namespace tool
}  // namespace hublet
