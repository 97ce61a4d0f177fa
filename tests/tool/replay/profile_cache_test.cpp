// The replay's preference files: read once for many passes, read again once changed.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdio>
#include <string>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#endif

#include "platform/wide_text.h"
#include "tool/replay/profile_cache.h"

namespace hublet {
namespace tool {
namespace {

// A file of this run's own, so that builds testing at once do not meet.
std::string Write(const std::string& name, const std::string& text) {
  static const std::string run = std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
  const std::string path = ::testing::TempDir() + "hublet-" + run + "-" + name;
  std::FILE* file = std::fopen(path.c_str(), "wb");
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
  return path;
}

std::uint32_t Fps(ProfileCache& cache, const std::string& path) {
  return cache.Open(Utf8ToWide(path))->ReadInt(L"MYVIEW", L"FPS", -1);
}

TEST(ProfileCache, AnswersWhatTheFileHoldsNow) {
  ProfileCache cache;
  const std::string path = Write("cache-a.ini", "[MYVIEW]\nFPS=25\n");
  EXPECT_EQ(Fps(cache, path), 25u);
  Write("cache-a.ini", "[MYVIEW]\nFPS=250\n");
  EXPECT_EQ(Fps(cache, path), 250u);
  // More files than are kept: the first, let go, is read again when it comes back.
  for (int i = 0; i < 6; ++i) {
    const std::string other = Write("cache-" + std::to_string(i) + ".ini", "[MYVIEW]\nFPS=" + std::to_string(i) + "\n");
    EXPECT_EQ(Fps(cache, other), static_cast<std::uint32_t>(i));
    std::remove(other.c_str());
  }
  EXPECT_EQ(Fps(cache, path), 250u);
  std::remove(path.c_str());
  EXPECT_EQ(Fps(cache, path), static_cast<std::uint32_t>(-1));
}

#ifndef _WIN32
// The parse is kept while the file keeps its size, time and identity: rewritten in place
// with the same size and its old time, it answers what it held (which shows it is not
// read again).
TEST(ProfileCache, ReadsAnUnchangedFileOnce) {
  ProfileCache cache;
  const std::string path = Write("cache-same.ini", "[MYVIEW]\nFPS=25\n");
  struct stat before;
  ASSERT_EQ(::stat(path.c_str(), &before), 0);
  EXPECT_EQ(Fps(cache, path), 25u);
  std::FILE* file = std::fopen(path.c_str(), "r+b");
  std::fwrite("[MYVIEW]\nFPS=26\n", 1, 16, file);
  std::fclose(file);
  const struct timespec times[2] = {before.st_atim, before.st_mtim};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  EXPECT_EQ(Fps(cache, path), 25u);
  std::remove(path.c_str());
}
#endif

}  // namespace
}  // namespace tool
}  // namespace hublet
