#pragma once
// The words that most tests use.

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

namespace talvora::test {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Texts = std::vector<std::string>;

}  // namespace talvora::test
