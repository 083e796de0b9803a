#pragma once
// The dialog in which the user chooses the files to send and the receiver's address. It loads with the first
// `SendData` and goes with "Send" or "Abort".
//
// The paths are native ones, kept as one text with "|" between them, so a path that holds a "|" is refused,
// in words; so is a file of 2 GiB and more, since sizes have 32 bits with a sign on the wire.

#include <functional>
#include <string>
#include <vector>

#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/ListBox.h"
#include "platform/Timer.h"
#include "transfer/TransferSurroundings.h"

namespace talvora {

class frmSendFile final : public Form {
  public:
    // `sendList(files, host, peer)` begins the transfer in a fresh window.
    using SendList =
        std::function<void(const std::string& files, const std::string& host, const std::string& peer)>;
    frmSendFile(const TransferSurroundings& around, SendList sendList);

    Label Label1{"IP / Host name :"};
    EditCombo Text1;  // the address; its list has those that files were sent to before
    ListBox List1;    // the names of the files
    CommandButton Command1{"Add"};
    CommandButton Command2{"Remove"};
    CommandButton Command3{"Clear"};
    CommandButton Command4{"Send", false};
    CommandButton Command5{"Abort"};
    Timer Timer1;  // nobody arms it: the wait for an address has no end of its own

    void Form_Load();
    // Opens the dialog. With `Resolve` the address is asked for and comes by `ResolveIP`.
    void SendData(const std::string& Host, const std::string& FilePath, bool SendNow, bool Resolve);
    void ResolveIP(const std::string& Address);
    // More files, as they were dropped on a window. What is no file is refused in words.
    void AddFiles(const std::vector<std::string>& paths);

  private:
    void connectButtons();
    void add(const std::string& path);
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Timer1_Timer();
    void lookAgain();
    std::string whyNot(const std::string& path, bool mustBeFile) const;
    void addOrRefuse(const std::vector<std::string>& paths, bool mustBeFiles);

    TransferSurroundings around_;
    SendList sendList_;
    std::string peer_;  // whom the dialog was opened for: a nick, or nobody yet
    std::string FileList;
    std::string lastChosen_;  // what the open dialog still holds when it is cancelled
    Subscriptions on_;
};

// The name of a file without its folders, in code page 1253.
std::string NameOfNative(const std::string& nativePath);

}  // namespace talvora
