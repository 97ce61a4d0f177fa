#pragma once
// Reading a preference file with the semantics of the Windows profile API
// (GetPrivateProfileIntW / GetPrivateProfileStringW). On Windows the reader calls that API
// for every lookup, as the plug-in must; elsewhere it parses the file once when opened and
// answers what Windows would.
//
// Wide strings hold UTF-16 code units on every platform (also where wchar_t is 32 bits),
// so that lengths and truncation match Windows.
#include <cstdint>
#include <memory>
#include <string>

namespace hublet {

class ProfileReader {
 public:
  virtual ~ProfileReader() = default;
  // As GetPrivateProfileIntW: the UINT it returns.
  virtual std::uint32_t ReadInt(const std::wstring& section, const std::wstring& key,
                                std::int32_t defaultValue) = 0;
  // As GetPrivateProfileStringW into a buffer of 260 characters: at most 259 of them.
  virtual std::wstring ReadText(const std::wstring& section, const std::wstring& key,
                                const std::wstring& defaultValue) = 0;
};

// Opens the platform's reader on path; a missing or unreadable file answers defaults.
std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path);

#ifndef _WIN32
class IniDocument;
// The file at path parsed as OpenProfile reads it, for a caller that keeps it (the replay
// reads a file once for many passes); read is false when the file could not be read to its
// end, and the document then answers what was read, or defaults.
std::shared_ptr<const IniDocument> ReadProfileDocument(const std::wstring& path, bool& read);
#endif

}  // namespace hublet
