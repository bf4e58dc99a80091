// The waves as text: the listing that is shown and printed, and the account of how each wave came
// about and why every other level carries none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/sounding_record.h"
#include "mountainwave/wave_model.h"
#include "mountainwave/wave_settings.h"

namespace vexa::mountainwave {

/// What a listing is made from.
struct WaveSource {
  const SoundingRecord& Sounding;
  const Site& Mountains;
  const WaveResults& Waves;
  const WaveOptions& Set;
  const Wave* Selected =
      nullptr;  // of Waves, whose field is shown; null: each mountain's strongest
};

/// The listing, line by line.
std::vector<std::string> WaveListing(const WaveSource& from);

/// How the waves came about: flow, waves with every term of theirs, and for each other level the
/// reason why it carries none.
std::vector<std::string> ExplainWaves(const WaveSource& from);

/// Why an interface carries no wave, as a part of a sentence: "l2 does not fall"; empty where it
/// does carry one.
std::string_view Reason(PassedOver why);

/// "11.6 km, 2.6 m/s MD-SV": what a list of waves says of one.
std::string WaveText(const Wave& wave, const WaveUnits& units);

/// "Wave 2.6 m/s M-S", a mark on a diagram, which has no more room.
std::string MarkText(const Wave& wave, const WaveUnits& units);

/// "Mtn #1", "Mtn #2 Harmonic".
std::string Tag(const Wave& wave);

}  // namespace vexa::mountainwave
