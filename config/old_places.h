// Where settings files had their fields before the keys stood in them. Such files are read once,
// and written with keys when settings are next saved.
#pragma once

#include "config/setting_row.h"
#include "config/system_file.h"

namespace vexa {

/// The keys of an old file's fields, record by record. Never changed: a row that came later has no
/// place there, one that is gone is passed over.
FieldPlaces OldPlaces(SettingsFile file);

}  // namespace vexa
