#pragma once
// Moments of the wall clock as whole seconds, so that a database can order and compare them. They count the
// local calendar as it hangs on the wall: a moment comes back as the date and time that it was made of.

#include <cstdint>
#include <string>

#include "platform/Clock.h"

namespace talvora {

std::int64_t MomentOf(const DateTime& date);
DateTime DateOf(std::int64_t moment);
// The general date as one word, every blank replaced by "_": "24/11/2026_20:24:28".
std::string DateWord(std::int64_t moment);

}  // namespace talvora
