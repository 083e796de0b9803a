#pragma once
// The window of what has become of the files sent and received: the history as a list, with the commands on
// its selected row. A received file is opened after "Yes" only, by the desktop's program for it.

#include <string>

#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/ListView.h"
#include "transfer/TransferSurroundings.h"

namespace talvora {

// The pictures of the rows.
namespace TransferPicture {
inline constexpr int Received = 1;
inline constexpr int Sent = 2;
}  // namespace TransferPicture

class frmTransfers final : public Form {
  public:
    explicit frmTransfers(const TransferSurroundings& around);

    ListView ListView1;  // name; from or to whom; outcome; when. The tag of a row is its native path
    CommandButton Command1{"Open", false};
    CommandButton Command2{"Open folder", false};
    CommandButton Command3{"Clear"};
    Label lblNone{"Nothing was sent or received yet."};  // visible while it is so

  private:
    void refresh();
    void lookAgain();
    void open();
    void openFolder();
    std::string selectedPath() const;

    TransferSurroundings around_;
    Subscriptions on_;
};

}  // namespace talvora
