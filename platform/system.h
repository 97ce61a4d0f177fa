#pragma once
// What the plug-in asks of the operating system, apart from the host: the preference file,
// who and where the user is, today's date, and the COM and sockets libraries. The real
// implementation calls Win32 on Windows and POSIX elsewhere; the simulated host has one
// whose answers a test chooses.
#include <ctime>
#include <memory>
#include <string>

#include "platform/profile.h"

namespace hublet {

// The buffers the plug-in reads the two names into: an account name of at most 256
// characters, and a host name of at most 259 bytes.
constexpr int kUserNameCapacity = 257;
constexpr int kHostNameCapacity = 260;

struct LocalDate {
  int day;    // 1 to 31
  int month;  // 1 to 12
  int year;   // four digits
};

class System {
 public:
  virtual ~System() = default;
  virtual void InitializeCom() = 0;
  virtual void StartSockets() = 0;
  virtual void ReleaseSockets() = 0;
  // The current account name (GetUserNameW); empty when it cannot be read.
  virtual std::wstring UserName() = 0;
  // The machine's host name (gethostname), widened with the C library's multibyte-to-wide
  // conversion; empty when it cannot be read.
  virtual std::wstring HostName() = 0;
  virtual LocalDate Today() = 0;
  virtual std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) = 0;
};

// The calendar date of an instant in the process's time zone: what Today reports for now.
LocalDate LocalDateAt(std::time_t instant);

// The operating system this build runs on.
std::unique_ptr<System> MakeNativeSystem();

}  // namespace hublet
