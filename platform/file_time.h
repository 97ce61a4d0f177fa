#pragma once
// Windows FILETIMEs as text: 100-nanosecond ticks since 1601-01-01 00:00 UTC, shown in UTC
// by arithmetic alone, so that every system shows the same text for the same ticks.
#include <cstdint>
#include <string>

namespace hublet {

// "YYYY-MM-DDThh:mm:ssZ" (ISO 8601, UTC, the fraction of a second dropped); empty for a
// time past 9999-12-31T23:59:59Z, which four digits of year cannot show.
std::string FileTimeToIso8601(std::uint64_t ticks);

}  // namespace hublet
