// The order of names in a compound file's directory: length first, then units after
// Unicode's simple upper-casing.
#include "platform/directory_names.h"

#include <gtest/gtest.h>

namespace hublet {
namespace {

TEST(DirectoryNames, SimpleUpperCaseBeyondLatin1) {
  const struct {
    char16_t unit, upper;
  } cases[] = {
      {u'a', u'A'},           {u'Z', u'Z'},           {u'5', u'5'},           {u'\u00e9', u'\u00c9'},
      {u'\u00f7', u'\u00f7'}, {u'\u00ff', u'\u0178'}, {u'\u00df', u'\u00df'}, {u'\u00b5', u'\u039c'},
      {u'\u0131', u'I'},      {u'\u017f', u'S'},      {u'\u0101', u'\u0100'}, {u'\u0100', u'\u0100'},
      {u'\u01c5', u'\u01c4'}, {u'\u03b1', u'\u0391'}, {u'\u03c2', u'\u03a3'}, {u'\u044f', u'\u042f'},
      {u'\u0450', u'\u0400'}, {u'\u1f80', u'\u1f88'}, {u'\uff5a', u'\uff3a'}, {char16_t{0xD801}, char16_t{0xD801}},
      {u'\u4e00', u'\u4e00'},
  };
  for (const auto& c : cases) EXPECT_EQ(SimpleUpperCase(c.unit), c.upper) << std::hex << c.unit;
  // Upper-casing twice changes nothing more, and the table maps 1190 units.
  int changed = 0;
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const char16_t upper = SimpleUpperCase(static_cast<char16_t>(unit));
    EXPECT_EQ(SimpleUpperCase(upper), upper) << std::hex << unit;
    changed += upper != unit;
  }
  EXPECT_EQ(changed, 1190);
}

TEST(DirectoryNames, ShorterFirstThenUpperCased) {
  EXPECT_LT(CompareDirectoryNames(u"Zz", u"aaa"), 0);
  EXPECT_GT(CompareDirectoryNames(u"aaa", u"Zz"), 0);
  EXPECT_EQ(CompareDirectoryNames(u"Scene", u"sCENE"), 0);
  EXPECT_LT(CompareDirectoryNames(u"\x05SummaryInforma\u017fion", u"\x05SummaryInformation"), 0);
  EXPECT_LT(CompareDirectoryNames(u"\x05SummaryInformat\u0131om", u"\x05SummaryInformation"), 0);
  EXPECT_EQ(CompareDirectoryNames(u"\x05SummaryInformat\u0131on", u"\x05SummaryInformation"), 0);
  EXPECT_GT(CompareDirectoryNames(u"\u00ff", u"\u00fe"), 0);  // Ÿ is U+0178, past Þ
}

}  // namespace
}  // namespace hublet
