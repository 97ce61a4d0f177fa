#include "tests/platform/structured_storage_reader.h"

#include <windows.h>
#include <objbase.h>
#include <propidl.h>

#include <cstdio>
#include <string>

namespace hublet {
namespace testing {
namespace {

// F29F85E0-4FF9-1068-AB91-08002B27B3D9, written out so no GUID library is needed.
const FMTID kSummaryFormatId = {0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
const IID kStorageId = {0x0000000B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
const IID kPropertySetStorageId = {0x0000013A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

std::string Hex(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

SummaryInformation Unreadable(const std::string& what, HRESULT result) {
  SummaryInformation info;
  info.reason = what + " (" + Hex(result) + ")";
  return info;
}

SummaryText TextOf(const PROPVARIANT& value) {
  SummaryText text;
  if (value.vt == VT_EMPTY) return text;
  text.present = true;
  if (value.vt == VT_LPWSTR && value.pwszVal != nullptr) {
    text.value = value.pwszVal;
    text.isText = true;
  } else if (value.vt == VT_LPSTR && value.pszVal != nullptr) {
    const int length = MultiByteToWideChar(CP_ACP, 0, value.pszVal, -1, nullptr, 0);
    text.value.resize(length > 0 ? static_cast<std::size_t>(length) : 1);
    MultiByteToWideChar(CP_ACP, 0, value.pszVal, -1, &text.value[0], length);
    text.value.resize(text.value.size() - 1);
    text.isText = true;
  }
  return text;
}

FileTime TimeOf(const PROPVARIANT& value) {
  FileTime time;
  time.present = value.vt != VT_EMPTY;
  time.isTime = value.vt == VT_FILETIME;
  if (time.isTime)
    time.ticks = static_cast<std::uint64_t>(value.filetime.dwHighDateTime) << 32 | value.filetime.dwLowDateTime;
  return time;
}

template <typename T>
void Release(T*& object) {
  if (object != nullptr) object->Release();
  object = nullptr;
}

}  // namespace

SummaryInformation ReadThroughStructuredStorage(const std::wstring& path) {
  SummaryInformation info;
  // Opened as a storage, then asked for its property sets: Wine's StgOpenStorageEx hands
  // back the storage whatever interface is asked for.
  IStorage* storage = nullptr;
  HRESULT result = StgOpenStorageEx(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, STGFMT_STORAGE, 0, nullptr,
                                    nullptr, kStorageId, reinterpret_cast<void**>(&storage));
  if (result == STG_E_FILEALREADYEXISTS) {
    // What structured storage answers for a file that is not a compound file.
    info.status = SummaryStatus::kNotCompoundFile;
    return info;
  }
  if (FAILED(result)) return Unreadable("structured storage cannot open it", result);
  IPropertySetStorage* sets = nullptr;
  result = storage->QueryInterface(kPropertySetStorageId, reinterpret_cast<void**>(&sets));
  Release(storage);
  if (FAILED(result)) return Unreadable("the file has no property sets", result);
  IPropertyStorage* properties = nullptr;
  result = sets->Open(kSummaryFormatId, STGM_READ | STGM_SHARE_EXCLUSIVE, &properties);
  Release(sets);
  if (result == STG_E_FILENOTFOUND) {
    info.status = SummaryStatus::kNoSummaryInformation;
    return info;
  }
  if (FAILED(result)) return Unreadable("the summary information cannot be opened", result);
  const PROPID ids[] = {2, 3, 4, 8, 12, 13};  // title, subject, author, last saved by, created, last saved
  PROPSPEC specs[6];
  PROPVARIANT values[6];
  for (ULONG i = 0; i < 6; ++i) {
    specs[i].ulKind = PRSPEC_PROPID;
    specs[i].propid = ids[i];
    PropVariantInit(&values[i]);
  }
  result = properties->ReadMultiple(6, specs, values);
  Release(properties);
  if (FAILED(result)) return Unreadable("the summary information cannot be read", result);
  // 8-bit strings come back converted to the system's code page, whatever the set's.
  info.title = TextOf(values[0]);
  info.subject = TextOf(values[1]);
  info.author = TextOf(values[2]);
  info.lastSavedBy = TextOf(values[3]);
  info.created = TimeOf(values[4]);
  info.lastSaved = TimeOf(values[5]);
  info.status = SummaryStatus::kRead;
  FreePropVariantArray(6, values);
  return info;
}

}  // namespace testing
}  // namespace hublet
