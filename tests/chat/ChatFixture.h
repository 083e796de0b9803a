#pragma once
// A chat view on virtual time, with a table of emoticons that few lines meet.

#include <memory>
#include <string>

#include "Vocabulary.h"
#include "chat/IRCWin.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {

using namespace std::string_literals;

class ChatTest : public testing::Test, public VirtualMachine {
  protected:
    ChatTest() { load("^_^:=:{\\b face}\r\n"); }

    void load(const std::string& table) {
        around.disk.put("System/emoticons.dat", table);
        emotions.LoadEmotions();
    }

    const std::vector<std::string>& asked = around.questions.asked;
    modEmotions emotions{around.files, globError};
    std::unique_ptr<IRCWin> window = std::make_unique<IRCWin>(around.platform, globError, emotions);
    IRCWin& view = *window;
};

}  // namespace talvora::test
