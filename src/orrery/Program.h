#pragma once
// What the programs `orrery`, `orrery-headless` and `orrery-desktop` share between `main` and the host: exit
// statuses, complaints and the command line. Standard library only, so that `orrery` starts at once.

#include <string>

#include "orrery/CommandLine.h"

namespace talvora {

namespace ExitStatus {
constexpr int Ended = 0;
constexpr int CannotStart = 1;
constexpr int WrongUsage = 2;
}  // namespace ExitStatus

// Prints the text, UTF-8, for the user, and returns the status.
int complain(const std::string& text, int status);

// Reads the command line and calls `host`, unless a text was asked for. Whatever keeps the host from starting
// becomes a complaint and a status.
int runProgram(int argc, char** argv, int (*host)(const CommandLine& line, char** argv));

}  // namespace talvora
