// hublet stamps over a folder of 10,000 scene files of a realistic size (a few megabytes,
// a dozen streams, the summary information in the mini stream, as 3ds Max writes them):
// files read a second, and the bytes each read costs. The scenes' bodies are holes in
// sparse files, so the folder takes little disk; the reader never touches them.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/temp_files.h"
#include "platform/byte_source.h"
#include "platform/summary_information.h"
#include "platform/wide_text.h"
#include "tests/support/compound_builder.h"

namespace hublet {
namespace {

constexpr int kSceneFiles = 10000;

std::string SceneBytesFor(int index, std::uint64_t& size) {
  using namespace testing;
  const std::u16string saver = index % 3 == 0 ? u"anna on RENDER07" : u"bob on WS12";
  std::vector<CompoundStream> streams = {
      {u"\x0005SummaryInformation",
       SummarySet({Utf16Property(2, u"14-11-2026"), Utf16Property(3, saver), Utf16Property(4, u"anna on RENDER07"),
                   Utf16Property(18, u"3ds Max")}), 0},
      {u"\x0005DocumentSummaryInformation", std::string(600, 'd'), 0},
      {u"Config", std::string(2000, 'c'), 0},
      {u"ClassDirectory3", std::string(3000, 'k'), 0},
      {u"DllDirectory", std::string(1500, 'l'), 0},
      {u"VideoPostQueue", std::string(300, 'v'), 0},
      {u"ClassData", std::string(900, 'a'), 0},
      {u"FileAssetMetaData3", std::string(1200, 'f'), 0},
      // The scene itself, 1 to 8 MiB, last so that its body is the file's hole.
      {u"Scene", std::string(4096, 's'), (1u << 20) * (1 + index % 8)},
  };
  const CompoundImage image = BuildCompoundFile(streams);
  size = image.size;
  return image.bytes;
}

// The folder, written on first use.
const std::vector<std::wstring>& SceneFiles() {
  static const std::vector<std::wstring>* files = [] {
    auto* paths = new std::vector<std::wstring>;
    const std::string folder = TempDirectory() + "/scenes";
    if (::mkdir(folder.c_str(), 0700) != 0) std::abort();
    RemoveAtExit(folder);
    for (int i = 0; i < kSceneFiles; ++i) {
      std::uint64_t size = 0;
      const std::string bytes = SceneBytesFor(i, size);
      const std::string path = folder + "/shot" + std::to_string(i) + ".max";
      const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      if (fd < 0 || ::write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
          ::ftruncate(fd, static_cast<off_t>(size)) != 0 || ::close(fd) != 0)
        std::abort();
      RemoveAtExit(path);
      paths->push_back(Utf8ToWide(path));
    }
    return paths;
  }();
  return *files;
}

// Counts what the reader asks of a file.
class CountedBytes : public ByteSource {
 public:
  explicit CountedBytes(ByteSource& file) : file_(file) {}
  std::uint64_t Size() const override { return file_.Size(); }
  std::uint64_t read = 0, reads = 0;

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    read += count;
    ++reads;
    return file_.ReadAt(offset, out, count) ? count : 0;
  }
  ByteSource& file_;
};

void BM_StampsOfSceneFolder(benchmark::State& state) {
  const std::vector<std::wstring>& files = SceneFiles();
  for (auto _ : state)
    for (const std::wstring& file : files) {
      const SummaryInformation info = ReadSummaryInformation(file);
      if (info.status != SummaryStatus::kRead) state.SkipWithError("a scene file did not read");
      benchmark::DoNotOptimize(info.subject.value.data());
    }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(files.size()));
  // What one file costs in I/O, against its size.
  std::uint64_t read = 0, reads = 0, size = 0;
  for (const std::wstring& file : files) {
    std::string error;
    const std::unique_ptr<ByteSource> bytes = OpenFileBytes(file, error);
    CountedBytes counted(*bytes);
    ReadSummaryFromBytes(counted);
    read += counted.read;
    reads += counted.reads;
    size += bytes->Size();
  }
  const double count = static_cast<double>(files.size());
  state.counters["bytes_read_per_file"] = static_cast<double>(read) / count;
  state.counters["reads_per_file"] = static_cast<double>(reads) / count;
  state.counters["file_mib"] = static_cast<double>(size) / count / (1 << 20);
}
BENCHMARK(BM_StampsOfSceneFolder)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace
}  // namespace hublet
