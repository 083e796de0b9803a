#pragma once
// Listens for senders during the component's life, asks the user for each offer, and stores what comes below
// `Received\`. Loaded hidden at the start, unloaded at the end; it shows itself when an offer arrives.
//
// Nothing reaches the disk before "Accept": the file layer refuses it, and it ends with the offer. What the
// rules empty or delete can be had back from the waste basket.
//
// For a view: `Picture1` is the panel that asks, with Label6, lblFrom and Command2; `Label4` says in words
// what goes on, `Meter` how far it is, `lblStored` what a file is called here if not as the sender says.

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Trap.h"
#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/Files.h"
#include "platform/Form.h"
#include "platform/Timer.h"
#include "transfer/ReceiverSocket.h"
#include "transfer/TransferMeter.h"
#include "transfer/TransferReading.h"
#include "transfer/TransferSurroundings.h"

namespace talvora {

class frmReceiveFile final : public Form {
  public:
    explicit frmReceiveFile(const TransferSurroundings& around);

    static constexpr const char* Folder = "Received\\";

    ReceiverSocket Socket;
    Image Picture1{0, false};  // the panel that asks
    Label Label6;              // the question
    Label lblFrom;             // from which address, and how much room there is
    Label Label2;              // the file's name
    Label lblStored;
    Label Label4;  // the current action
    Label Label5{"Transfer speed: 0.00 bps"};
    ProgressBar ProgressBar1;  // files
    ProgressBar ProgressBar2;  // bytes of the file
    CommandButton Command1{"Abort"};
    CommandButton Command2{"Accept"};
    Timer Timer1;  // the silence watchdog
    Timer Timer2;  // the speed display
    Timer Timer3;  // the end of an abort; it goes on until the other side says "X"
    Timer Timer4;  // the wait for an offer
    Timer Timer5;  // keeps the listener alive
    TransferMeter Meter;

    // The address to listen on may have changed.
    void RefreshSettings();

  protected:
    // The user's close box refuses what is under way and hides the window; the receiver goes on.
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;
    void Form_Unload() override;

  private:
    void connectTimers();
    void connectSocket();
    void Winsock1_ConnectionRequest();
    void Winsock1_DataArrival();
    void Winsock1_Close();
    void Winsock1_Error(const std::string& description);
    bool act(Trap& step, char type, std::string_view parameter);
    void offered(Trap& step, std::string_view parameter);
    void ask(const std::string& nick, const std::string& count);
    void tellHost(const std::string& title, const std::string& text);
    void canceledBySender(Trap& step);
    void startNamed(Trap& step, std::string_view parameter);
    void StartRCV(const std::string& Name, std::int32_t Size);
    void openFile(Trap& step, const std::string& name);
    void showFile(const std::string& name, std::int32_t size);
    void showStored(const std::string& name);
    void StackData(std::string_view Data);
    void stored(Trap& step, std::size_t bytes);
    void fileIsWhole(Trap& step);
    void Finalize(Trap& step, std::int32_t file);
    void allIsDone();
    void SendData(std::string Text);
    void KillPartial();
    void Timer1_Timer();
    void Timer2_Timer();
    void Timer3_Timer();
    void Timer4_Timer();
    void Timer5_Timer();
    void Command1_Click();
    void Command2_Click();
    void closeFile(Trap& step);
    void endOffer();
    void allow(bool receiving);
    void hideUnlessNew(std::int32_t offer);
    void note(const std::string& outcome);

    TransferSurroundings around_;
    std::int32_t FileNum = 0;  // stays after the file was closed, with what `KillPartial` makes of that
    std::int32_t FileSize = 0;
    std::int64_t FilePos = 0;
    TransferReading Reading;
    std::int32_t FileCount = 0;
    std::int32_t FilesDone = 0;
    std::int64_t SpeedBytes = 0;
    std::string FilePath;
    bool Receiving = false;
    File file_;
    std::int32_t lastNum_ = 0;
    std::int32_t killed_ = 0;      // the number whose file has been deleted
    std::int32_t connection_ = 0;  // counts them
    std::int32_t offer_ = 0;       // likewise
    bool over_ = false;          // it was accepted, and has ended; what is still on its way is nobody's fault
    bool accepted_ = false;      // the user has accepted this offer
    bool canceledTold_ = false;  // on this connection
    bool announced_ = false;     // likewise
    bool noted_ = false;         // the history knows what became of the file or offer at hand
    std::string name_;           // of the current file, as it is shown
    std::string peer_;           // the sender's nick, as it is shown
    TellOnce stray_;             // of messages that nobody has asked for
    BoundedYield yield_;
    Subscriptions on_;
};

}  // namespace talvora
