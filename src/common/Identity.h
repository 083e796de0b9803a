#pragma once
// Who the user says he is: what no network takes as a nick, and what is no location path. One rule for all
// who ask for them. Plain functions; texts are in code page 1253.

#include <string>

namespace talvora {

// What is wrong, in plain words; empty if nothing is.
std::string NickProblem(const std::string& nick);
std::string PathProblem(const std::string& path);

}  // namespace talvora
