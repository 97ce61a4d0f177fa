#include "tool/replay/profile_cache.h"

#ifndef _WIN32
#include <sys/stat.h>

#include "platform/wide_text.h"
#endif

namespace hublet {
namespace tool {
namespace {

// More files than a session switches between; each costs its size in memory.
constexpr std::size_t kKeptFiles = 4;

}  // namespace

bool ProfileCache::Version::operator==(const Version& other) const {
  return size == other.size && modified == other.modified && device == other.device && inode == other.inode;
}

std::unique_ptr<ProfileReader> ProfileCache::Open(const std::wstring& path) {
#ifdef _WIN32
  return OpenProfile(path);
#else
  struct stat info;
  if (::stat(WideToUtf8(path).c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return OpenProfile(path);
  const Version version{static_cast<long long>(info.st_size),
                        static_cast<long long>(info.st_mtim.tv_sec) * 1000000000LL + info.st_mtim.tv_nsec,
                        static_cast<unsigned long long>(info.st_dev), static_cast<unsigned long long>(info.st_ino)};
  std::shared_ptr<const IniDocument> document;
  for (auto it = entries_.begin(); it != entries_.end(); ++it) {
    if (it->path != path) continue;
    if (it->version == version) document = it->document;
    entries_.erase(it);
    break;
  }
  if (!document) {
    // A file that could not be read answers what the reader makes of it, and is not kept:
    // it may read next time.
    bool read = false;
    document = ReadProfileDocument(path, read);
    if (!read) return std::unique_ptr<ProfileReader>(new IniDocumentReader(document));
  }
  if (entries_.size() == kKeptFiles) entries_.erase(entries_.begin());
  entries_.push_back(Entry{path, version, document});
  return std::unique_ptr<ProfileReader>(new IniDocumentReader(document));
#endif
}

}  // namespace tool
}  // namespace hublet
