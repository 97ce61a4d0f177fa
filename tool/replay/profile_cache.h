#pragma once
// The preference files of a replay, each parsed once for all the passes that read it and
// parsed again only when it has changed (its size, modification time or identity): a
// session of thousands of passes over a large file then reads it once, not thousands of
// times. On Windows the plug-in's reader is the system's profile API, which reads the
// file itself, so nothing is kept there.
#include <memory>
#include <string>
#include <vector>

#include "platform/ini_document.h"
#include "platform/profile.h"

namespace hublet {
namespace tool {

class ProfileCache {
 public:
  // A reader of the file at path (a real path, as the profile reader takes it).
  std::unique_ptr<ProfileReader> Open(const std::wstring& path);

 private:
  struct Version {
    long long size;
    long long modified;  // nanoseconds
    unsigned long long device;
    unsigned long long inode;
    bool operator==(const Version& other) const;
  };
  struct Entry {
    std::wstring path;
    Version version;
    std::shared_ptr<const IniDocument> document;
  };
  // The files read last, the latest last: a session that goes back and forth between a
  // few files reads each once.
  std::vector<Entry> entries_;
};

}  // namespace tool
}  // namespace hublet
