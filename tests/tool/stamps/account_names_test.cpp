// Windows account names compared as Windows signs them in: one account whatever the case
// of its letters, in every script the table pairs, and nothing else taken for the same.
#include <gtest/gtest.h>

#include "tool/stamps/account_names.h"

namespace hublet {
namespace tool {
namespace {

TEST(AccountNames, OneAccountWhateverTheCaseOfItsLetters) {
  EXPECT_TRUE(SameAccount(L"Anna", L"anna"));
  EXPECT_TRUE(SameAccount(L"J\u00f6rg \u00ff", L"J\u00d6RG \u0178"));           // Latin-1
  EXPECT_TRUE(SameAccount(L"\u0109\u0133\u014b\u0142\u017e", L"\u0108\u0132\u014a\u0141\u017d"));  // Latin Extended-A
  EXPECT_TRUE(SameAccount(L"\u03c9\u03c2", L"\u03a9\u03a3"));                  // Greek, a final sigma
  EXPECT_TRUE(SameAccount(L"\u0436\u0451", L"\u0416\u0401"));                  // Cyrillic
}

TEST(AccountNames, AnyOtherDifferenceIsAnotherAccount) {
  EXPECT_FALSE(SameAccount(L"anna", L"anna2"));
  EXPECT_FALSE(SameAccount(L"anna", L"anne"));
  EXPECT_FALSE(SameAccount(L"stra\u00dfe", L"STRASSE"));
  EXPECT_FALSE(SameAccount(L"\u00f7", L"\u00d7"));  // division and multiplication signs, not letters
  EXPECT_FALSE(SameAccount(L"\u0138", L"\u0137"));  // kra, the lone letter among the pairs
  EXPECT_FALSE(SameAccount(L"a@b", L"a`b"));        // neighbours of the ASCII letters
}

}  // namespace
}  // namespace tool
}  // namespace hublet
