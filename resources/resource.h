// String-table IDs of Hublet.gup. Entry 1 (the library description) is absent on purpose.
// Plain macros: included by hublet.rc, by the binding and by the portable tests.
#pragma once

#define IDS_CATEGORY   2
#define IDS_CLASS_NAME 3
#define IDS_PARAMS     4
#define IDS_SPIN       5
