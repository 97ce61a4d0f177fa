#include <windows.h>

#include "platform/profile.h"

namespace hublet {
namespace {

// The plug-in's own buffer for text values.
const DWORD kTextBufferSize = 260;

// Asks the profile API on every lookup, so an edit of the file shows at the next call.
class Win32ProfileReader final : public ProfileReader {
 public:
  explicit Win32ProfileReader(const std::wstring& path) : path_(path) {}

  std::uint32_t ReadInt(const std::wstring& section, const std::wstring& key,
                        std::int32_t defaultValue) override {
    return ::GetPrivateProfileIntW(section.c_str(), key.c_str(), defaultValue,
                                   path_.c_str());
  }

  std::wstring ReadText(const std::wstring& section, const std::wstring& key,
                        const std::wstring& defaultValue) override {
    wchar_t buffer[kTextBufferSize] = {};
    const DWORD count = ::GetPrivateProfileStringW(section.c_str(), key.c_str(),
                                                   defaultValue.c_str(), buffer,
                                                   kTextBufferSize, path_.c_str());
    return std::wstring(buffer, count < kTextBufferSize ? count : kTextBufferSize - 1);
  }

 private:
  std::wstring path_;
};

}  // namespace

std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) {
  return std::unique_ptr<ProfileReader>(new Win32ProfileReader(path));
}

}  // namespace hublet
