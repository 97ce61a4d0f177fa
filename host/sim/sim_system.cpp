#include "host/sim/sim_system.h"

namespace hublet {

void SimSystem::InitializeCom() { transcript_.Add("InitializeCom()"); }

void SimSystem::StartSockets() {
  transcript_.Add("StartSockets()");
  ++socketUses;
}

void SimSystem::ReleaseSockets() {
  transcript_.Add("ReleaseSockets()");
  --socketUses;
}

std::wstring SimSystem::UserName() {
  transcript_.Add("UserName() -> " + FormatText(userName));
  return userName;
}

std::wstring SimSystem::HostName() {
  transcript_.Add("HostName() -> " + FormatText(hostName));
  return hostName;
}

LocalDate SimSystem::Today() {
  transcript_.Add("Today() -> " + std::to_string(today.day) + "-" + std::to_string(today.month) + "-" +
                  std::to_string(today.year));
  return today;
}

std::unique_ptr<ProfileReader> SimSystem::OpenProfile(const std::wstring& path) {
  transcript_.Add("OpenProfile(" + FormatText(path) + ")");
  const auto it = files_.find(path);
  return hublet::OpenProfile(it == files_.end() ? path : it->second);
}

}  // namespace hublet
