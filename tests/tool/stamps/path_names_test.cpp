// Paths as hublet stamps takes and shows them: on POSIX a name is bytes, and one that is
// not UTF-8 must reach the file system unchanged and be shown escaped; on Windows paths
// are shown with one kind of separator.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/byte_source.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

#ifdef _WIN32

TEST(PathNames, WindowsPathsAreShownWithSlashesOnly) {
  EXPECT_EQ(ShownPath(L"scenes\\shot010/anim.max"), "scenes/shot010/anim.max");
  EXPECT_EQ(ShownPath(L"C:\\Archiv\\Sz\u00e8ne.max"), "C:/Archiv/Sz\xc3\xa8ne.max");
}

#else

TEST(PathNames, BytesThatAreNotUtf8AreCarriedAndShownEscaped) {
  const struct {
    std::string bytes, shown;
  } cases[] = {
      {"caf\xe9.max", "caf\\xE9.max"},                 // Latin-1
      {"caf\xc3\xa9.max", "caf\xc3\xa9.max"},          // UTF-8
      {"\xe2\x82/x", "\\xE2\\x82/x"},                   // a sequence cut short
      {"\xf0\x90\x82\x80\xff", "\xf0\x90\x82\x80\\xFF"},  // a pair of surrogates, then a byte
      {"\xed\xb2\x80", "\\xED\\xB2\\x80"},              // a surrogate written as UTF-8
      {"\xc0\xaf", "\\xC0\\xAF"},                       // an overlong "/"
      {"a\x7f\x80.max", "a\x7f\\x80.max"},              // the last of ASCII, then a lone trail byte
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(ShownPath(WidePath(c.bytes)), c.shown) << c.shown;
  EXPECT_EQ(WidePath("caf\xe9"), std::wstring(L"caf") + static_cast<wchar_t>(0xDCE9));
}

// The file is found by the bytes of its name, however they were carried.
TEST(PathNames, AFileIsOpenedByTheBytesOfItsName) {
  const std::string name = "hublet-test-na\xefve-\xf0\x90\x82\x80\xff.max";
  std::FILE* file = std::fopen(name.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fputs("scene", file);
  std::fclose(file);
  std::string error;
  const std::unique_ptr<ByteSource> bytes = OpenFileBytes(WidePath(name), error);
  std::string why;
  const PathKind kind = KindOfPath(WidePath(name), why);
  std::vector<DirectoryEntry> entries;
  ASSERT_TRUE(ListDirectory(L".", entries, error)) << error;
  std::remove(name.c_str());
  ASSERT_TRUE(bytes != nullptr) << error;
  EXPECT_EQ(bytes->Size(), 5u);
  EXPECT_EQ(kind, PathKind::kFile);
  bool listed = false;
  for (const DirectoryEntry& entry : entries) listed = listed || entry.name == WidePath(name);
  EXPECT_TRUE(listed);
}

#endif

}  // namespace
}  // namespace hublet
