#pragma once
// Windows only, for the tests: the summary information of a file as the system's
// structured storage reads it (StgOpenStorageEx, IPropertySetStorage::Open,
// IPropertyStorage::ReadMultiple), the oracle the portable reader is held against.
#include <string>

#include "platform/summary_information.h"

namespace hublet {
namespace testing {

// 8-bit strings come back from structured storage in the system's code page, whatever
// the set's; they are decoded in it.
SummaryInformation ReadThroughStructuredStorage(const std::wstring& path);

}  // namespace testing
}  // namespace hublet
