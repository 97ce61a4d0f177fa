// The replay's preference files: read once for many passes, read again once changed.
#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <string>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#endif

#include "platform/wide_text.h"
#include "tests/support/scratch_file.h"
#include "tool/replay/profile_cache.h"

namespace hublet {
namespace tool {
namespace {

using testing::ScratchFile;

std::uint32_t Fps(ProfileCache& cache, const ScratchFile& file) {
  return cache.Open(file.path())->ReadInt(L"MYVIEW", L"FPS", -1);
}

// Files beyond those kept, each read once, so that the cache lets the first ones go.
void ReadOthers(ProfileCache& cache) {
  for (int i = 0; i < 6; ++i) {
    const ScratchFile other("[MYVIEW]\nFPS=" + std::to_string(i) + "\n");
    EXPECT_EQ(Fps(cache, other), static_cast<std::uint32_t>(i));
  }
}

TEST(ProfileCache, AnswersWhatTheFileHoldsNow) {
  ProfileCache cache;
  std::unique_ptr<ScratchFile> file(new ScratchFile("[MYVIEW]\nFPS=25\n"));
  EXPECT_EQ(Fps(cache, *file), 25u);
  file->Rewrite("[MYVIEW]\nFPS=250\n");
  EXPECT_EQ(Fps(cache, *file), 250u);
  ReadOthers(cache);
  EXPECT_EQ(Fps(cache, *file), 250u);
  const std::wstring path = file->path();
  file.reset();
  EXPECT_EQ(cache.Open(path)->ReadInt(L"MYVIEW", L"FPS", -1), static_cast<std::uint32_t>(-1));
}

#ifndef _WIN32
// The parse is kept while the file keeps its size, time and identity: rewritten in place
// with the same size and its old time, it answers what it held (which shows it is not
// read again), until the cache has let it go.
TEST(ProfileCache, ReadsAnUnchangedFileOnce) {
  ProfileCache cache;
  const ScratchFile file("[MYVIEW]\nFPS=25\n");
  const std::string path = WideToUtf8(file.path());
  struct stat before;
  ASSERT_EQ(::stat(path.c_str(), &before), 0);
  EXPECT_EQ(Fps(cache, file), 25u);
  std::FILE* written = std::fopen(path.c_str(), "r+b");
  std::fwrite("[MYVIEW]\nFPS=26\n", 1, 16, written);
  std::fclose(written);
  const struct timespec times[2] = {before.st_atim, before.st_mtim};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(Fps(cache, file), 25u);
  ReadOthers(cache);
  EXPECT_EQ(Fps(cache, file), 26u);
}
#endif

}  // namespace
}  // namespace tool
}  // namespace hublet
