#pragma once
// A client on line, on a server that the test plays.

#include "Vocabulary.h"
#include "common/HostMessageNumbers.h"
#include "simulation/World.h"

namespace talvora::test {

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
