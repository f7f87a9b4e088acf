// SPDX-License-Identifier: Apache-2.0
// Values that the traced program binds and a trace must not hold.
#pragma once

namespace oci_test {

inline constexpr char kPlantedText[] = "planted'text' 73190";
inline constexpr char kPlantedName[] = "PLANTEDNAME73191";
inline constexpr int kPlantedNumber = 731920541;
inline constexpr double kPlantedFraction = 7319305.25;
inline constexpr char kPlantedDate[] = "1973-03-19";

// What any of them looks like, cut up too.
inline constexpr const char* kPlanted[] = {"planted",   "73190",   "PLANTEDNAME", "plantedname",
                                           "731920541", "7319305", "1973"};

}  // namespace oci_test
