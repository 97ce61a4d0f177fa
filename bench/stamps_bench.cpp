// hublet stamps over a folder of 10,000 scene files laid out as 3ds Max writes them
// (version 4, 4096-byte sectors, eleven streams, a summary set of code page 65001 made
// large by a thumbnail, after the scene's body; 0.3 to 1.1 MB): files read a second, and
// the reads and bytes each file costs. The scenes' bodies are holes in sparse files, so
// the folder takes little disk; the reader never touches them.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/archive_scenes.h"
#include "bench/temp_files.h"
#include "platform/byte_source.h"
#include "platform/summary_information.h"
#include "platform/wide_text.h"
#include "tests/support/compound_builder.h"
#include "tests/support/counting_bytes.h"

namespace hublet {
namespace {

constexpr int kSceneFiles = 10000;

// The folder, written on first use.
const std::vector<std::wstring>& SceneFiles() {
  static const std::vector<std::wstring>* files = [] {
    auto* paths = new std::vector<std::wstring>;
    const std::string folder = TempDirectory() + "/scenes";
    if (::mkdir(folder.c_str(), 0700) != 0) std::abort();
    RemoveAtExit(folder);
    for (int i = 0; i < kSceneFiles; ++i) {
      const std::string path = folder + "/shot" + std::to_string(i) + ".max";
      if (!bench::WriteSparse(path, bench::ArchiveScene(i))) std::abort();
      RemoveAtExit(path);
      paths->push_back(Utf8ToWide(path));
    }
    return paths;
  }();
  return *files;
}

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
    testing::CountingBytes counted(*bytes);
    ReadSummaryFromBytes(counted);
    read += counted.bytesRead;
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
