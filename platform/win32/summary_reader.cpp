#include <windows.h>
#include <objbase.h>
#include <propidl.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "platform/summary_information.h"

namespace hublet {
namespace {

// F29F85E0-4FF9-1068-AB91-08002B27B3D9, written out so no GUID library is needed.
const FMTID kSummaryFormatId = {0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
const IID kPropertySetStorageId = {0x0000013A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
const unsigned kUtf16CodePage = 1200;

std::string Hex(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

SummaryText TextOf(const PROPVARIANT& value, unsigned codePage) {
  SummaryText text;
  if (value.vt == VT_EMPTY) return text;
  text.present = true;
  if (value.vt == VT_LPWSTR && value.pwszVal != nullptr) {
    text.value = value.pwszVal;
    text.isText = true;
  } else if (value.vt == VT_LPSTR && value.pszVal != nullptr) {
    text.value = CodePageToWide(codePage, value.pszVal);
    text.isText = true;
  }
  return text;
}

template <typename T>
void Release(T*& object) {
  if (object != nullptr) object->Release();
  object = nullptr;
}

}  // namespace

std::wstring CodePageToWide(unsigned codePage, const std::string& bytes) {
  if (bytes.empty()) return std::wstring();
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
  if (length == 0)
    throw std::runtime_error("the strings' code page " + std::to_string(codePage) + " is not known here");
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(codePage, 0, bytes.data(), size, &text[0], length);
  return text;
}

SummaryInformation ReadSummaryInformation(const std::wstring& path) {
  SummaryInformation info;
  IPropertySetStorage* sets = nullptr;
  HRESULT result = StgOpenStorageEx(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, STGFMT_STORAGE, 0, nullptr,
                                    nullptr, kPropertySetStorageId, reinterpret_cast<void**>(&sets));
  if (result == STG_E_FILEALREADYEXISTS) {
    // What structured storage answers for a file that is not a compound file.
    info.status = SummaryStatus::kNotCompoundFile;
    return info;
  }
  if (FAILED(result)) {
    info.reason = "structured storage cannot open it (" + Hex(result) + ")";
    return info;
  }
  IPropertyStorage* properties = nullptr;
  result = sets->Open(kSummaryFormatId, STGM_READ | STGM_SHARE_EXCLUSIVE, &properties);
  Release(sets);
  if (result == STG_E_FILENOTFOUND) {
    info.status = SummaryStatus::kNoSummaryInformation;
    return info;
  }
  if (FAILED(result)) {
    info.reason = "the summary information cannot be opened (" + Hex(result) + ")";
    return info;
  }
  PROPSPEC specs[4];
  PROPVARIANT values[4];
  for (ULONG i = 0; i < 4; ++i) {
    specs[i].ulKind = PRSPEC_PROPID;
    specs[i].propid = i + 1;  // code page, title, subject, author
    PropVariantInit(&values[i]);
  }
  result = properties->ReadMultiple(4, specs, values);
  Release(properties);
  if (FAILED(result)) {
    info.reason = "the summary information cannot be read (" + Hex(result) + ")";
    return info;
  }
  // 8-bit strings come back in the set's code page, or in the system's when the set is
  // stored as UTF-16.
  unsigned codePage = values[0].vt == VT_I2 ? static_cast<unsigned short>(values[0].iVal) : CP_ACP;
  if (codePage == kUtf16CodePage) codePage = CP_ACP;
  try {
    info.title = TextOf(values[1], codePage);
    info.subject = TextOf(values[2], codePage);
    info.author = TextOf(values[3], codePage);
    info.status = SummaryStatus::kRead;
  } catch (const std::exception& error) {
    info = SummaryInformation();
    info.reason = error.what();
  }
  FreePropVariantArray(4, values);
  return info;
}

}  // namespace hublet
