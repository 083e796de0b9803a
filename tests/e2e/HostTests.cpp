// The programs themselves: refusals at the start, one gate for one host, and the shell's tool.

#include <gtest/gtest.h>

#include <csignal>

#include "common/HostMessageNumbers.h"
#include "e2e/EachServer.h"

namespace talvora::programs {

namespace {

Program ctl(const OrreryProcess& orrery, std::initializer_list<std::string> words) {
    Program program;
    program.arguments = {builtProgram("orreryctl"), "--gate", orrery.gatePath()};
    program.arguments.insert(program.arguments.end(), words);
    return program;
}

struct Refusal {
    const char* name;
    const char* profile;  // nullptr: there is no such file
    const char* said;
};

TEST(WrongProfiles, EndTheStartWithTheLineNamed) {
    const Refusal refusals[] = {
        {"port", "[network]\nServerHost=irc.talvora.test\nServerPort=70000\n", "network.ini:3: "},
        {"unknown key", "[network]\n\nServerName=x\n", "network.ini:3: "},
        {"encoding", "[network]\nEncoding=latin1\n", "network.ini:2: "},
        {"rewrite", "[network]\nDialect=standard +no-such\n", "network.ini:2: "},
        {"no file", nullptr, "network.ini"},
    };
    for (const auto& [name, profile, said] : refusals) {
        SCOPED_TRACE(name);
        Folder folder;
        if (profile != nullptr) folder.write("network.ini", profile);
        Process orrery(orreryProgram(folder, folder / "network.ini"));
        EXPECT_EQ(orrery.waitExit(), 2);
        EXPECT_NE(orrery.output().find(said), std::string::npos) << orrery.output();
    }
}

TEST(Host, LetsOnlyOneHaveAGate) {
    const FreePort nobody;
    OrreryProcess first(nobody.number());
    Folder folder;
    Program second = orreryProgram(folder, folder.write("network.ini", profileText(nobody.number(), {})));
    second.arguments.insert(second.arguments.end(), {"--gate", first.gatePath()});
    Process refused(second);

    EXPECT_EQ(refused.waitExit(), 1) << refused.output();
    EXPECT_NE(refused.output().find(first.gatePath()), std::string::npos) << refused.output();
    first.gate().send(HostMsg::GatherAbout, {});
    first.gate().takeLine(hostMessage(HostMsg::About));
    EXPECT_EQ(first.terminate(), 0) << first.process().output();
}

TEST(Orreryctl, WatchesAndSends) {
    const FreePort nobody;
    OrreryProcess orrery(nobody.number());
    Process watch(ctl(orrery, {"watch", "4000", "19"}));
    const Deadline deadline(Patience);
    while (watch.output().find("4000") == std::string::npos && !deadline.passed()) {
        orrery.gate().send(4000, 1);  // nobody hears it until the tool listens
        watch.idle(20);
    }

    Process about(ctl(orrery, {"send", "18"}));
    EXPECT_EQ(about.waitExit(), 0) << about.output();
    Process words(ctl(orrery, {"send", "4000", "Καλημέρα", "12"}));
    EXPECT_EQ(words.waitExit(), 0) << words.output();
    orrery.gate().expectMessage(4000, QJsonArray{"Καλημέρα", "12"});
    watch.expectOutput("\"Data\":[\"Καλημέρα\",\"12\"]");
    EXPECT_NE(watch.output().find("Talvora Messenger"), std::string::npos) << watch.output();

    EXPECT_EQ(orrery.terminate(), 0) << orrery.process().output();
    watch.waitExit();
    Process late(ctl(orrery, {"send", "18"}));
    EXPECT_EQ(late.waitExit(), 1);
}

}  // namespace

}  // namespace talvora::programs
