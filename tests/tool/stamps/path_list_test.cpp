// hublet stamps' list of paths (--files-from) as a job system writes it, and damage in it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tool/stamps/path_list.h"
#include "tool/stamps/scene_walk.h"

namespace hublet {
namespace tool {
namespace {

// A list file holding bytes, read from its start.
class ListFile {
 public:
  explicit ListFile(const std::string& bytes) : file_(std::tmpfile()) {
    std::fwrite(bytes.data(), 1, bytes.size(), file_);
    std::rewind(file_);
  }
  ~ListFile() { std::fclose(file_); }
  std::FILE* get() const { return file_; }

 private:
  std::FILE* file_;
};

std::vector<std::string> AllPaths(PathList& list) {
  std::vector<std::string> paths;
  std::string path;
  while (list.Next(path)) paths.push_back(path);
  return paths;
}

TEST(PathList, NamedPathsComeFirstThenTheListsLinesWhateverTheirEnds) {
  const ListFile file("a.max\r\n\r\n\nb c/\n\rd.max\r\n\re.max");
  PathList list({"named.max", "-x"}, file.get(), "paths.list");
  EXPECT_EQ(AllPaths(list), (std::vector<std::string>{"named.max", "-x", "a.max", "b c/", "\rd.max", "\re.max"}));
  EXPECT_EQ(list.error(), "");
}

TEST(PathList, ALineLongerThanAnyPathEndsTheListWithAReason) {
  const ListFile file("a.max\n" + std::string((1 << 17) + 1, 'x') + "\nb.max\n");
  PathList list({}, file.get(), "paths.list");
  EXPECT_EQ(AllPaths(list), std::vector<std::string>{"a.max"});
  EXPECT_EQ(list.error(), "a line of paths.list is longer than 131072 bytes");
}

TEST(PathList, ALineOfTheLongestLengthIsAPath) {
  const std::string longest(1 << 17, 'x');
  const ListFile file(longest + "\n");
  PathList list({}, file.get(), "paths.list");
  EXPECT_EQ(AllPaths(list), std::vector<std::string>{longest});
}

TEST(PathList, TheWalkNamesAPathWithANulAndAListCutShort) {
  const ListFile file(std::string("a\0b.max\n", 8) + std::string(1 << 18, 'x'));
  PathList list({}, file.get(), "paths.list");
  SceneWalk walk(list, false);
  WalkStep step;
  ASSERT_TRUE(walk.Next(step));
  EXPECT_EQ(step.kind, WalkStep::Kind::kUnreadablePath);
  EXPECT_EQ(step.reason, "a path cannot hold a NUL byte");
  ASSERT_TRUE(walk.Next(step));
  EXPECT_EQ(step.kind, WalkStep::Kind::kUnreadableList);
  EXPECT_FALSE(walk.Next(step));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
