#pragma once
// Sends a list of files to one receiver over one connection. The receiver asks for each block by its
// position, and one block is in flight at a time. A list always runs on a fresh form.
//
// For a view: `Label4` says in words what goes on, `Meter` how far it is. Abort and Retry are Command1 and
// Command2.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/Trap.h"
#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/Form.h"
#include "platform/Timer.h"
#include "transfer/BlockReader.h"
#include "transfer/TransferMeter.h"
#include "transfer/TransferReading.h"
#include "transfer/TransferSurroundings.h"

namespace talvora {

class frmTransferStatus final : public Form {
  public:
    explicit frmTransferStatus(const TransferSurroundings& around);

    Winsock Winsock1;
    Label Label2;  // the file's name
    Label Label4;  // the current action
    Label Label5{"Transfer speed: 0.00 bps"};
    ProgressBar ProgressBar1;  // files
    ProgressBar ProgressBar2;  // bytes of the file
    CommandButton Command1{"Abort"};
    CommandButton Command2{"Retry"};
    Timer Timer1;  // the silence watchdog
    Timer Timer2;  // the speed display
    Timer Timer3;  // the end of an abort
    TransferMeter Meter;
    std::string Peer;  // whom the files are for, as the user knows him: a nick or an address

    // `FileList`: native paths with "|" between them.
    void SendList(const std::string& FileList, const std::string& Host);

  protected:
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;
    void Form_Unload() override;

  private:
    void connectSocket();
    void Winsock1_Connect();
    void Winsock1_DataArrival();
    void Winsock1_Close();
    void Winsock1_Error(const std::string& description);
    bool act(Trap& step, char type, std::string_view parameter);
    void askedFor(Trap& step, std::string_view parameter);
    void endedByReceiver(Trap& step);
    void refusedByReceiver(Trap& step);
    void canceledByReceiver(Trap& step);
    void StartSend(bool Advance);
    void SendFile(const std::string& Path);
    void SendPart(std::int32_t Position);
    void sendBlock(Trap& step, std::int32_t position);
    void Finish();
    void SendData(std::string Text);
    void sendMessage(Trap& step, const std::string& message);
    void Timer1_Timer();
    void Timer2_Timer();
    void Timer3_Timer();
    void Command1_Click();
    void Command2_Click();
    void closeFile(Trap& step);
    void resetShown(const std::string& action);
    void note(const std::string& outcome);
    std::int32_t packageSplit() const;

    TransferSurroundings around_;
    std::int32_t FileNum = 0;
    std::int32_t FileSize = 0;
    TransferReading Reading;
    std::vector<std::string> Files;
    std::int32_t FileCount = 0;
    std::int32_t FileIndex = 0;
    std::int64_t SpeedBytes = 0;
    bool Finished = false;  // the connection may end now, and no error is to be shown
    std::int32_t PackageSize = 0;
    File file_;
    BlockReader blocks_;
    BoundedYield yield_;
    TellOnce stray_;             // of positions that nobody can answer
    bool canceledTold_ = false;  // on this connection
    std::string noted_;          // what the history says of the file at hand
    Subscriptions on_;
};

}  // namespace talvora
