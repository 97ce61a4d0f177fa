// winsock2.h must come before windows.h, which would pull in the old winsock.h.
#include <winsock2.h>
#include <windows.h>
#include <objbase.h>

#include <cstdlib>
#include <ctime>

#include "platform/system.h"

namespace hublet {
namespace {

class Win32System final : public System {
 public:
  void InitializeCom() override { ::CoInitialize(nullptr); }

  void StartSockets() override {
    WSADATA data;
    ::WSAStartup(MAKEWORD(2, 2), &data);
  }

  void ReleaseSockets() override { ::WSACleanup(); }

  std::wstring UserName() override {
    wchar_t buffer[kUserNameCapacity] = {};
    DWORD size = kUserNameCapacity;
    if (!::GetUserNameW(buffer, &size)) return std::wstring();
    return std::wstring(buffer, ::wcsnlen(buffer, kUserNameCapacity));
  }

  // Needs the sockets library started; without it the buffer stays empty.
  std::wstring HostName() override {
    char narrow[kHostNameCapacity] = {};
    if (::gethostname(narrow, kHostNameCapacity) != 0) return std::wstring();
    narrow[kHostNameCapacity - 1] = '\0';
    // The CRT's checked conversions: Visual Studio deprecates the unchecked ones.
    wchar_t wide[kHostNameCapacity] = {};
    std::size_t converted = 0;
    if (::mbstowcs_s(&converted, wide, kHostNameCapacity, narrow, _TRUNCATE) != 0) return std::wstring();
    return std::wstring(wide, ::wcsnlen(wide, kHostNameCapacity));
  }

  LocalDate Today() override { return LocalDateAt(std::time(nullptr)); }

  std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) override {
    return hublet::OpenProfile(path);
  }
};

}  // namespace

LocalDate LocalDateAt(std::time_t instant) {
  std::tm local = {};
  if (::localtime_s(&local, &instant) != 0) return LocalDate{1, 1, 1970};
  return LocalDate{local.tm_mday, local.tm_mon + 1, local.tm_year + 1900};
}

std::unique_ptr<System> MakeNativeSystem() {
  return std::unique_ptr<System>(new Win32System());
}

}  // namespace hublet
