#include "simulation/Failure.h"

#include <cstdio>
#include <cstdlib>

namespace talvora::test {

namespace {

void endTheProgram(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

FailureHook hookOfTheProgram = endTheProgram;

}  // namespace

void OnFailure(FailureHook hook) {
    hookOfTheProgram = hook;
}

void Fail(const std::string& what) {
    hookOfTheProgram(what);
}

}  // namespace talvora::test
