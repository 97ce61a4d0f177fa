// Windows only: scene files written with the system's structured storage, read back by
// structured storage and by the portable reader every build uses, which must agree on
// every one.
#include <windows.h>
#include <objbase.h>
#include <propidl.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/summary_information.h"
#include "tests/platform/structured_storage_reader.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

const FMTID kSummaryFormatId = {0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};

enum class Strings { kUtf16, kCodePage, kCodePageInUnicodeSet };

// Creation and last save, as 3ds Max writes them: 2020-07-03 09:15:00 and 2023-11-14
// 17:40:12 UTC.
const std::uint64_t kFileTimes[2] = {132382413000000000, 133444572120000000};

struct Layout {
  ULONG sectorSize;
  Strings strings;
  bool largeSet;     // a long comment pushes the set out of the mini stream
  int properties;    // how many of title, subject, author (0: an empty set)
  int otherStreams;  // streams beside the set, as a scene has
};

std::string Ansi(const std::wstring& text) {
  const int length = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, &bytes[0], length, nullptr, nullptr);
  bytes.resize(bytes.size() - 1);
  return bytes;
}

// The test-only writer: what a scene's summary information looks like when the host saves it.
void WriteScene(const std::wstring& path, const Layout& layout, const std::vector<std::wstring>& texts) {
  STGOPTIONS options = {};
  options.usVersion = 1;
  options.ulSectorSize = layout.sectorSize;
  IStorage* storage = nullptr;
  ASSERT_EQ(StgCreateStorageEx(path.c_str(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, STGFMT_DOCFILE, 0,
                               &options, nullptr, IID_IStorage, reinterpret_cast<void**>(&storage)),
            S_OK);
  for (int i = 0; i < layout.otherStreams; ++i) {
    IStream* stream = nullptr;
    ASSERT_EQ(storage->CreateStream((L"Stream" + std::to_wstring(i)).c_str(),
                                    STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream),
              S_OK);
    const std::string data(static_cast<std::size_t>(100 + 37 * i), 'x');
    stream->Write(data.data(), static_cast<ULONG>(data.size()), nullptr);
    stream->Release();
  }
  IPropertySetStorage* sets = nullptr;
  ASSERT_EQ(storage->QueryInterface(IID_IPropertySetStorage, reinterpret_cast<void**>(&sets)), S_OK);
  IPropertyStorage* properties = nullptr;
  const DWORD flags = layout.strings == Strings::kCodePage ? PROPSETFLAG_ANSI : PROPSETFLAG_DEFAULT;
  ASSERT_EQ(sets->Create(kSummaryFormatId, nullptr, flags, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                         &properties),
            S_OK);
  std::vector<std::string> ansi;
  for (const std::wstring& text : texts) ansi.push_back(Ansi(text));
  PROPSPEC specs[7];
  PROPVARIANT values[7];
  ULONG count = 0;
  for (int i = 0; i < layout.properties + (layout.largeSet ? 1 : 0); ++i, ++count) {
    const bool comment = i == layout.properties;
    specs[i].ulKind = PRSPEC_PROPID;
    specs[i].propid = comment ? 6 : static_cast<PROPID>(2 + i);
    PropVariantInit(&values[i]);
    if (layout.strings == Strings::kUtf16) {
      values[i].vt = VT_LPWSTR;
      values[i].pwszVal = const_cast<wchar_t*>(texts[comment ? 3 : i].c_str());
    } else {
      values[i].vt = VT_LPSTR;
      values[i].pszVal = const_cast<char*>(ansi[comment ? 3 : i].c_str());
    }
  }
  // With a whole stamp, what 3ds Max writes beside it: its last saver and two times.
  if (layout.properties >= 3) {
    for (PROPID id : {8u, 12u, 13u}) {
      specs[count].ulKind = PRSPEC_PROPID;
      specs[count].propid = id;
      PROPVARIANT& value = values[count++];
      PropVariantInit(&value);
      if (id != 8) {
        value.vt = VT_FILETIME;
        value.filetime.dwLowDateTime = static_cast<DWORD>(kFileTimes[id - 12]);
        value.filetime.dwHighDateTime = static_cast<DWORD>(kFileTimes[id - 12] >> 32);
      } else if (layout.strings == Strings::kUtf16) {
        value.vt = VT_LPWSTR;
        value.pwszVal = const_cast<wchar_t*>(texts[4].c_str());
      } else {
        value.vt = VT_LPSTR;
        value.pszVal = const_cast<char*>(ansi[4].c_str());
      }
    }
  }
  if (count > 0) {
    ASSERT_EQ(properties->WriteMultiple(count, specs, values, 2), S_OK);
  }
  properties->Commit(STGC_DEFAULT);
  properties->Release();
  sets->Release();
  storage->Commit(STGC_DEFAULT);
  storage->Release();
}

bool RunningUnderWine() {
  const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

void ExpectSame(const SummaryText& system, const SummaryText& portable, const wchar_t* what) {
  EXPECT_EQ(system.present, portable.present) << what;
  EXPECT_EQ(system.isText, portable.isText) << what;
  EXPECT_EQ(system.value, portable.value) << what;
}

void ExpectSame(const FileTime& system, const FileTime& portable, const wchar_t* what) {
  EXPECT_EQ(system.present, portable.present) << what;
  EXPECT_EQ(system.isTime, portable.isTime) << what;
  EXPECT_EQ(system.ticks, portable.ticks) << what;
}

TEST(SummaryCrossCheck, BothReadersAgreeOnFilesWrittenByTheSystem) {
  const std::vector<std::wstring> texts = {L"3-7-2020", L"J\u00f6rg on RENDER07", L"anna on WS12",
                                           std::wstring(5000, L'c'), L"adavis4"};
  int files = 0;
  for (ULONG sectorSize : {512u, 4096u})
    for (Strings strings : {Strings::kUtf16, Strings::kCodePage, Strings::kCodePageInUnicodeSet})
      for (bool largeSet : {false, true})
        for (int properties : {0, 1, 3})
          for (int otherStreams : {0, 100}) {
            const Layout layout = {sectorSize, strings, largeSet, properties, otherStreams};
            SCOPED_TRACE(::testing::Message() << sectorSize << " strings " << static_cast<int>(strings) << " large "
                                              << largeSet << " properties " << properties << " others "
                                              << otherStreams);
            testing::ScratchFile file;
            WriteScene(file.path(), layout, texts);
            const SummaryInformation system = testing::ReadThroughStructuredStorage(file.path());
            const SummaryInformation portable = ReadSummaryInformation(file.path());
            ASSERT_EQ(system.status, SummaryStatus::kRead) << system.reason;
            ASSERT_EQ(portable.status, SummaryStatus::kRead) << portable.reason;
            // Wine's reader takes the byte count of an 8-bit string in a UTF-16 set for a
            // count of characters and returns the first half; Windows returns it whole, as
            // the portable reader does.
            if (strings == Strings::kCodePageInUnicodeSet && RunningUnderWine()) {
              if (properties >= 3) {
                EXPECT_EQ(portable.subject.value, texts[1]);
                EXPECT_EQ(portable.author.value, texts[2]);
                EXPECT_EQ(portable.lastSavedBy.value, texts[4]);
              }
            } else {
              ExpectSame(system.title, portable.title, L"title");
              ExpectSame(system.subject, portable.subject, L"subject");
              ExpectSame(system.author, portable.author, L"author");
              ExpectSame(system.lastSavedBy, portable.lastSavedBy, L"last saved by");
            }
            ExpectSame(system.created, portable.created, L"created");
            ExpectSame(system.lastSaved, portable.lastSaved, L"last saved");
            EXPECT_EQ(portable.lastSaved.ticks, properties >= 3 ? kFileTimes[1] : 0);
            EXPECT_EQ(portable.title.present, properties >= 1);
            EXPECT_EQ(portable.author.present, properties >= 3);
            if (properties >= 1) {
              EXPECT_EQ(portable.title.value, L"3-7-2020");
            }
            ++files;
          }
  EXPECT_EQ(files, 72);
}

}  // namespace
}  // namespace hublet
