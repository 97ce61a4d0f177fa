#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <vector>

#include "platform/system.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

std::string LoginName() {
  char buffer[kUserNameCapacity] = {};
  if (::getlogin_r(buffer, sizeof buffer) == 0 && buffer[0] != '\0') return buffer;
  // No controlling terminal (services, containers): the account of the effective user.
  std::vector<char> scratch(16384);
  struct passwd entry;
  struct passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, scratch.data(), scratch.size(), &found) == 0 &&
      found != nullptr && found->pw_name != nullptr) {
    return found->pw_name;
  }
  const char* user = std::getenv("USER");
  return user != nullptr ? user : "";
}

// COM and Winsock do not exist here; the rest maps onto POSIX.
class PosixSystem final : public System {
 public:
  void InitializeCom() override {}
  void StartSockets() override {}
  void ReleaseSockets() override {}

  std::wstring UserName() override { return Utf8ToWide(LoginName()); }

  // Each byte becomes the code unit of the same number, as the Windows C library's
  // multibyte-to-wide conversion does in its default "C" locale.
  std::wstring HostName() override {
    char buffer[kHostNameCapacity] = {};
    if (::gethostname(buffer, sizeof buffer - 1) != 0) return std::wstring();
    std::wstring name;
    for (const char* p = buffer; *p != '\0'; ++p) {
      name += static_cast<wchar_t>(static_cast<unsigned char>(*p));
    }
    return name;
  }

  LocalDate Today() override { return LocalDateAt(std::time(nullptr)); }

  std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) override {
    return hublet::OpenProfile(path);
  }
};

}  // namespace

LocalDate LocalDateAt(std::time_t instant) {
  struct tm local = {};
  ::localtime_r(&instant, &local);
  return LocalDate{local.tm_mday, local.tm_mon + 1, local.tm_year + 1900};
}

std::unique_ptr<System> MakeNativeSystem() {
  return std::unique_ptr<System>(new PosixSystem());
}

}  // namespace hublet
