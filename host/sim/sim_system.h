#pragma once
// The operating system as the simulated host's plug-in sees it: names and date chosen by
// the test or the tool, COM and sockets recorded, and preference files read with the real
// profile reader of this build from files mapped onto the host's paths. A path that is
// not mapped holds no file: the machine running the simulation is never read from there.
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/sim/transcript.h"
#include "platform/system.h"

namespace hublet {

class SimSystem final : public System {
 public:
  explicit SimSystem(Transcript& transcript) : transcript_(transcript) {}

  void InitializeCom() override;
  void StartSockets() override;
  void ReleaseSockets() override;
  std::wstring UserName() override;
  std::wstring HostName() override;
  LocalDate Today() override;
  // A mapped path opens its real file; any other answers as a missing file.
  std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) override;

  void MapFile(const std::wstring& hostPath, const std::wstring& realPath) { files_[hostPath] = realPath; }
  void RemoveFile(const std::wstring& hostPath) { files_.erase(hostPath); }

  // Opens the real file behind a mapped path: the platform's reader, unless a user of the
  // simulation brings its own (the replay parses a file once for many passes).
  std::function<std::unique_ptr<ProfileReader>(const std::wstring& realPath)> openFile = &hublet::OpenProfile;

  std::wstring userName = L"anna";
  std::wstring hostName = L"RENDER07";
  LocalDate today{3, 7, 2020};
  int socketUses = 0;  // started minus released

 private:
  Transcript& transcript_;
  std::map<std::wstring, std::wstring> files_;
};

// A date as the transcript and the save stamp write it: D-M-YYYY.
std::string FormatDate(const LocalDate& date);

}  // namespace hublet
