// What lookups keep of a hostile preference file must stay small whatever the file holds:
// `hublet check` promises under three times a file's size in memory, and the document
// already takes one. This program replaces the global allocation functions to measure the
// most that lookups hold at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/ini_document.h"

namespace {

bool g_counting = false;
std::size_t g_live = 0;
std::size_t g_peak = 0;
// Each block starts with the bytes it counted (0 when made while not counting).
const std::size_t kHeader = 16;

void* Allocate(std::size_t size) {
  unsigned char* block = static_cast<unsigned char*>(std::malloc(size + kHeader));
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t counted = g_counting ? size : 0;
  std::memcpy(block, &counted, sizeof counted);
  g_live += counted;
  g_peak = std::max(g_peak, g_live);
  return block + kHeader;
}

void Release(void* p) {
  if (p == nullptr) return;
  unsigned char* block = static_cast<unsigned char*>(p) - kHeader;
  std::size_t counted = 0;
  std::memcpy(&counted, block, sizeof counted);
  g_live -= counted;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* p) noexcept { Release(p); }
void operator delete[](void* p) noexcept { Release(p); }
void operator delete(void* p, std::size_t) noexcept { Release(p); }
void operator delete[](void* p, std::size_t) noexcept { Release(p); }

namespace hublet {
namespace {

using Lookups = std::vector<std::pair<std::wstring, std::wstring>>;

// The most bytes held at once by these lookups, prepared together as the checker does and
// then asked one by one as the plug-in does.
std::size_t PeakOfLookups(const std::string& bytes, const Lookups& lookups) {
  const IniDocument document = IniDocument::Parse(bytes);
  g_live = g_peak = 0;
  g_counting = true;
  document.Prepare(lookups);
  for (const auto& lookup : lookups) document.Find(lookup.first, lookup.second);
  g_counting = false;
  return g_peak;
}

std::string Numbered(const std::string& head, const std::string& before, const std::string& after,
                     const std::string& tail) {
  std::string bytes = head;
  for (int n = 0; n < 200000; ++n) bytes += before + std::to_string(n) + after;
  return bytes + tail;
}

// The sections sought sit behind 200,000 headers of other names, or hold 200,000 keys of
// other names or of one name; the keys sought are there, missing, or beyond them. Or behind
// 2,000 headers, or among 2,000 keys, of names longer than any remembered.
TEST(IniMemory, LookupsKeepLittleOfAHostileFile) {
  const std::string sought = "[FLINT]\nFORCEPERSP=1\n[MYVIEW]\nFPS=25\n";
  std::string longHeaders, longKeys = "[MYVIEW]\n";
  for (int n = 0; n < 2000; ++n) {
    const std::string name = std::string(2000, 'L') + std::to_string(n);
    longHeaders += "[" + name + "]\n";
    longKeys += name + "=1\n";
  }
  const std::string files[] = {
      Numbered("", "[S", "]\n", sought),
      Numbered("[MYVIEW]\n", "K", "=1\n", "FPS=25\n[FLINT]\nFORCEPERSP=1\n"),
      Numbered("[MYVIEW]\n", "FPS", "\nFPS=1\n", "[FLINT]\nFORCEPERSP=1\n"),
      longHeaders + sought,
      longKeys + "FPS=25\n[FLINT]\nFORCEPERSP=1\n",
  };
  const Lookups lookups = {{L"FLINT", L"FORCEPERSP"}, {L"MYVIEW", L"FPS"}, {L"MYVIEW", L"NUMVP"},
                           {L"MYVIEW", L"K199999"}, {L"S199999", L"K"}, {L"OTHER", L"K"}};
  for (const std::string& bytes : files) {
    // The bound is far below the file's few megabytes and far above what the bounded
    // notes of a thousand headers and a thousand entries a section take.
    EXPECT_LT(PeakOfLookups(bytes, lookups), 1024u * 1024u) << bytes.substr(0, 20);
  }
}

// Without this, the figures above could come from a counter that never counts.
TEST(IniMemory, TheCounterSeesWhatLookupsKeep) {
  EXPECT_GT(PeakOfLookups("[S]\nK=1\n", {{L"S", L"K"}}), 0u);
}

}  // namespace
}  // namespace hublet
