#pragma once
// What the programs `orrery` and `orrery-desktop` share between `main` and the host: exit statuses,
// complaints, the command line, and the process as the host needs it.

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

// To be called before the application object is made.
void prepareEnvironment();
// And after it: the toolkit takes the locale as it finds it, but numbers are written in one way only.
void settleLocale();

}  // namespace talvora
