#pragma once
// The dialog that asks for the key of each channel that was refused for want of one, in turn, or for the name
// of a channel to create. A key is kept before the server has accepted it, so a wrong one is offered again.

#include <functional>
#include <string>

#include "common/ComponentSettings.h"
#include "common/Trap.h"
#include "platform/Controls.h"
#include "platform/Form.h"

namespace talvora {

class frmChanKey final : public Form {
  public:
    using Sender = std::function<void(const std::string& line)>;

    // `sendIRC` sends a line to the server.
    frmChanKey(GlobError& reporter, ComponentSettings& settings, Sender sendIRC);

    Label Label1;            // the question
    TextBox Text1;           // the key, or the new channel's name
    Image Picture1[2];       // 0 accepts, 1 cancels
    Image Image2;            // the picture of a key
    Image Image3{0, false};  // the picture of a new channel

    std::string ChanList;     // still to ask for, each followed by "|"
    std::string CurrentChan;  // asked for now
    bool NewChanMode = false;

    void ExecList(const std::string& list);
    void JoinNew();
    // Shows the next question, or closes.
    void Display();
    void Picture1_Click(int index);

    // A server that goes on refusing cannot make the round longer than this.
    static constexpr std::size_t LongestList = 64 * 1024;

  private:
    void dress();
    void accept(Trap& step);
    void ask();

    GlobError& globError_;
    ComponentSettings& settings_;
    Sender sendIRC_;
    Subscriptions on_;
};

}  // namespace talvora
