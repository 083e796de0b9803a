#pragma once
// A client on line, on a server that the test plays.

#include <gmock/gmock.h>

#include "common/HostMessageNumbers.h"
#include "simulation/World.h"

namespace talvora::test {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

inline void says(World& world, Client& client, const std::string& line) {
    client.server.says(line);
    world.time.run(10ms);
}

struct OnLine : testing::Test {
    void says(const std::string& line) { test::says(world, maria, line); }
    World world;
    Client& maria = world.loggedIn("Maria");
};

}  // namespace talvora::test
