#include "tool/replay/profile_cache.h"

#include <utility>

#ifndef _WIN32
#include <sys/stat.h>

#include "platform/wide_text.h"
#include "tool/common/file_access.h"
#endif

namespace hublet {
namespace tool {
namespace {

// More files than a session switches between; each costs its size in memory.
constexpr std::size_t kKeptFiles = 4;

// Answers from a document that several passes share.
class SharedDocumentReader final : public ProfileReader {
 public:
  explicit SharedDocumentReader(std::shared_ptr<const IniDocument> document) : document_(std::move(document)) {}
  std::uint32_t ReadInt(const std::wstring& section, const std::wstring& key, std::int32_t defaultValue) override {
    return document_->LookupInt(section, key, defaultValue);
  }
  std::wstring ReadText(const std::wstring& section, const std::wstring& key,
                        const std::wstring& defaultValue) override {
    return document_->LookupText(section, key, defaultValue);
  }

 private:
  std::shared_ptr<const IniDocument> document_;
};

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
    // Read and parsed as the POSIX profile reader does; a file that cannot be read is left
    // to that reader, which answers the defaults.
    std::string bytes;
    std::string error;
    if (!ReadFileBytes(WideToUtf8(path), bytes, error)) return OpenProfile(path);
    document = std::make_shared<const IniDocument>(IniDocument::Parse(std::move(bytes)));
  }
  if (entries_.size() == kKeptFiles) entries_.erase(entries_.begin());
  entries_.push_back(Entry{path, version, document});
  return std::unique_ptr<ProfileReader>(new SharedDocumentReader(document));
#endif
}

}  // namespace tool
}  // namespace hublet
