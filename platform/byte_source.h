#pragma once
// Random access to the bytes of a file, for readers that touch only the parts they need.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace hublet {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t Size() const = 0;
  // Reads count bytes at offset into out; false when the source ends before them or the
  // read fails.
  bool ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count);

 protected:
  // Reads up to count bytes at offset, which lie inside the source; how many were read,
  // 0 when the read fails.
  virtual std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) = 0;
};

// Bytes held in memory (tests, fuzzing).
class MemoryBytes : public ByteSource {
 public:
  explicit MemoryBytes(std::string bytes) : bytes_(std::move(bytes)) {}
  std::uint64_t Size() const override { return bytes_.size(); }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override;
  std::string bytes_;
};

// A regular file, opened for reading; null with the reason in error when it cannot be.
std::unique_ptr<ByteSource> OpenFileBytes(const std::wstring& path, std::string& error);

// What a path names, for walking folders.
enum class PathKind { kMissing, kFile, kDirectory, kOther };
PathKind KindOfPath(const std::wstring& path);

// The entries of a folder (without "." and ".."), sorted by their names' UTF-16 code
// units; false with the reason in error when the folder cannot be read. A link to a folder
// (a symbolic link, a junction) is kOther, so that a walk cannot go round in a loop.
struct DirectoryEntry {
  std::wstring name;
  PathKind kind;
};
bool ListDirectory(const std::wstring& path, std::vector<DirectoryEntry>& entries, std::string& error);

}  // namespace hublet
