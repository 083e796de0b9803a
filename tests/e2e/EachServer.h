#pragma once
// Tests that hold with each of the three IRC servers. One server a test, started for it.

#include <gtest/gtest.h>

#include <string>

#include "simulation/programs/IrcPeer.h"
#include "simulation/programs/IrcServer.h"
#include "simulation/programs/OrreryProcess.h"

namespace talvora::programs {

class EachServer : public testing::TestWithParam<ServerKind> {
  protected:
    void SetUp() override {
        const std::string reason = IrcServer::whyNot(GetParam());
        if (!reason.empty()) GTEST_SKIP() << reason;
    }
};

inline std::string paramName(const testing::TestParamInfo<ServerKind>& info) {
    return nameOf(info.param);
}

}  // namespace talvora::programs

// A suite of the fixture above, for all three.
#define TALVORA_EACH_SERVER(Suite)                                                                          \
    class Suite : public EachServer {};                                                                     \
    INSTANTIATE_TEST_SUITE_P(With, Suite,                                                                   \
                             testing::Values(ServerKind::Ngircd, ServerKind::Inspircd, ServerKind::Hybrid), \
                             paramName)
