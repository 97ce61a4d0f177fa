#pragma once
// hublet stamps: whether a stamp still tells who saved the file last and when, against
// what 3ds Max records on every save, with the plug-in or without it.
#include <string>

#include "platform/summary_information.h"

namespace hublet {
namespace tool {

// Why a stamp (subject "USER on MACHINE", saveDate its title as an ISO date) no longer
// tells the last save; empty when nothing says so. 3ds Max's last saver (8) is evidence
// when it is a name other than USER, and its last save (13) when it falls more than a day
// before the stamp's date (which is local: some time zone puts the same moment on the day
// before or after the UTC one). A later save by USER is none: the plug-in keeps its stamp
// while the same saver saves again. A property absent, empty or of another type is no
// evidence.
std::string WhyStale(const std::wstring& subject, const std::string& saveDate, const SummaryText& lastSavedBy,
                     const FileTime& lastSaved);

}  // namespace tool
}  // namespace hublet
