// What displays, listings and reports read: how a sounding was analysed and how it is shown.
#pragma once

#include "analysis/analysis_settings.h"
#include "config/view_settings.h"

namespace vexa {

struct DisplaySettings : AnalysisSettings, ViewSettings {
  bool operator==(const DisplaySettings&) const = default;
};

}  // namespace vexa
