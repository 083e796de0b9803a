// How the simulation tells that a story goes otherwise than it was laid out: an unexpected question, an
// answer that nobody asked for. Tests bind this to their framework; where nobody has bound it, it ends the
// program.
#pragma once

#include <string>

namespace talvora::test {

using FailureHook = void (*)(const std::string& what);

// Set once, at the start of a program.
void OnFailure(FailureHook hook);
void Fail(const std::string& what);

}  // namespace talvora::test
