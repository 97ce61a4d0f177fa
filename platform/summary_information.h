#pragma once
// The summary-information property set of an OLE compound file (a .max scene): the three
// properties the plug-in stamps on every save, and beside them what 3ds Max itself records
// on every save (the last saver, the times of creation and of the last save). Every system reads it with the reader of
// compound_file.h and decodes its strings with code_pages.h, so that a folder gives the
// same answer on Windows and elsewhere (the tests under Wine hold it against structured
// storage).
#include <cstdint>
#include <string>

#include "platform/byte_source.h"

namespace hublet {

// One string property of the set.
struct SummaryText {
  bool present = false;  // the set holds the property
  bool isText = false;   // ... as a string (8-bit in the set's code page, or UTF-16)
  std::wstring value;    // the string as UTF-16, up to its first NUL
};

// One FILETIME property of the set: 100-nanosecond ticks since 1601-01-01 00:00 UTC
// (file_time.h shows them as text).
struct FileTime {
  bool present = false;  // the set holds the property
  bool isTime = false;   // ... as a VT_FILETIME
  std::uint64_t ticks = 0;
};

enum class SummaryStatus {
  kRead,                  // the set was read (it may hold none of the properties)
  kNotCompoundFile,       // the file is not an OLE compound file
  kNoSummaryInformation,  // a compound file without the summary-information set
  kUnreadable,            // the file or the set is damaged or cannot be read: see reason
};

struct SummaryInformation {
  SummaryStatus status = SummaryStatus::kUnreadable;
  std::string reason;   // why, when status is kUnreadable
  SummaryText title;    // property 2
  SummaryText subject;  // property 3
  SummaryText author;   // property 4
  SummaryText lastSavedBy;  // property 8: the account that saved the file last
  FileTime created;         // property 12
  FileTime lastSaved;       // property 13
};

// The set of a file, and of any bytes.
SummaryInformation ReadSummaryInformation(const std::wstring& path);
SummaryInformation ReadSummaryFromBytes(ByteSource& source);

}  // namespace hublet
