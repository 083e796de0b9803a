#pragma once
// A size in words: whole up to 1024 (" b"), above it divided by 1024 up to three times, with two decimals
// (" Kb", " Mb", " Gb"). Plain function, no state.

#include <string>

namespace talvora {

std::string FormatBit(double bytes);

}  // namespace talvora
