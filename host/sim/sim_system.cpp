#include "host/sim/sim_system.h"

#include "platform/ini_document.h"

namespace hublet {

void SimSystem::InitializeCom() { transcript_.Add(Call("InitializeCom", {})); }

void SimSystem::StartSockets() {
  transcript_.Add(Call("StartSockets", {}));
  ++socketUses;
}

void SimSystem::ReleaseSockets() {
  transcript_.Add(Call("ReleaseSockets", {}));
  --socketUses;
}

std::wstring SimSystem::UserName() {
  transcript_.Add(Query("UserName", {}, TextValue(userName)));
  return userName;
}

std::wstring SimSystem::HostName() {
  transcript_.Add(Query("HostName", {}, TextValue(hostName)));
  return hostName;
}

LocalDate SimSystem::Today() {
  transcript_.Add(Query("Today", {}, WordValue(FormatDate(today))));
  return today;
}

std::unique_ptr<ProfileReader> SimSystem::OpenProfile(const std::wstring& path) {
  transcript_.Add(Call("OpenProfile", {TextValue(path)}));
  const auto it = files_.find(path);
  if (it != files_.end()) return openFile(it->second);
  return std::unique_ptr<ProfileReader>(new IniDocumentReader(IniDocument::Parse(std::string())));
}

std::string FormatDate(const LocalDate& date) {
  return std::to_string(date.day) + "-" + std::to_string(date.month) + "-" + std::to_string(date.year);
}

}  // namespace hublet
