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

// Paths are wide strings here. A POSIX file name is bytes, not always UTF-8 (Latin-1 names
// from a Windows share): each byte outside a valid UTF-8 sequence is carried as the lone
// surrogate U+DC00+byte, which no UTF-8 text decodes to, so every name survives the way
// there and back. WidePath takes a path as the tool's arguments and lists give it (any
// bytes on POSIX, UTF-8 on Windows).
std::wstring WidePath(const std::string& path);
// A path as people read it: UTF-8, with a byte that is not text as "\xNN", and one kind of
// separator, "/", on every system.
std::string ShownPath(const std::wstring& path);

// A regular file, opened for reading; null with the reason in error when it cannot be.
std::unique_ptr<ByteSource> OpenFileBytes(const std::wstring& path, std::string& error);

// What a path names, for walking folders; for kMissing, why in whyMissing ("No such file
// or directory", "Permission denied").
enum class PathKind { kMissing, kFile, kDirectory, kOther };
PathKind KindOfPath(const std::wstring& path, std::string& whyMissing);

// The entries of a folder (without "." and ".."), sorted by their names' UTF-16 code
// units; false with the reason in error when the folder cannot be read. A link to a folder
// (a symbolic link, a junction) is kOther, so that a walk cannot go round in a loop; a
// link to nothing, or an entry whose kind cannot be learnt, is kMissing.
struct DirectoryEntry {
  std::wstring name;
  PathKind kind;
};
bool ListDirectory(const std::wstring& path, std::vector<DirectoryEntry>& entries, std::string& error);

}  // namespace hublet
