#pragma once
// The summary-information property set of an OLE compound file (a .max scene): the three
// properties the plug-in stamps on every save. Every system reads it with the reader of
// compound_file.h and decodes its strings with code_pages.h, so that a folder gives the
// same answer on Windows and elsewhere (the tests under Wine hold it against structured
// storage).
#include <string>

#include "platform/byte_source.h"

namespace hublet {

// One string property of the set.
struct SummaryText {
  bool present = false;  // the set holds the property
  bool isText = false;   // ... as a string (8-bit in the set's code page, or UTF-16)
  std::wstring value;    // the string as UTF-16, up to its first NUL
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
};

// The set of a file, and of any bytes.
SummaryInformation ReadSummaryInformation(const std::wstring& path);
SummaryInformation ReadSummaryFromBytes(ByteSource& source);

}  // namespace hublet
