#include "transfer/frmTransfers.h"

#include <vector>

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

frmTransfers::frmTransfers(const TransferSurroundings& around) : around_(around) {
    Caption = "File transfers";
    ListView1.ColumnHeaders = std::vector<std::string>{"File", "With", "Outcome", "When"};
    on_ += around_.History.Changed.connect([this] { refresh(); });
    on_ += ListView1.ItemClick.connect([this](ListItem&) { lookAgain(); });
    on_ += ListView1.DblClick.connect([this] { open(); });
    on_ += Command1.Click.connect([this] { open(); });
    on_ += Command2.Click.connect([this] { openFolder(); });
    on_ += Command3.Click.connect([this] { around_.History.Clear(); });
    refresh();
}

void frmTransfers::refresh() {
    std::vector<ListRow> rows;
    for (const FinishedFile& file : around_.History.Files()) {
        ListRow row;
        row.Text = file.Name;
        row.SubItems = {(file.Received ? "from " : "to ") + file.Peer, file.Outcome, GeneralDate(file.When)};
        row.SmallIcon = file.Received ? TransferPicture::Received : TransferPicture::Sent;
        row.Tag = file.Path;
        rows.push_back(std::move(row));
    }
    ListView1.Refresh(rows);
    lblNone.Visible = rows.empty();
    Command3.Enabled = !rows.empty();
    lookAgain();
}

std::string frmTransfers::selectedPath() const {
    return ListView1.SelectedItem != nullptr ? ListView1.SelectedItem->Tag() : std::string();
}

void frmTransfers::lookAgain() {
    Command1.Enabled = !selectedPath().empty();
    Command2.Enabled = !selectedPath().empty();
}

// Whatever another user has sent may do anything once it is opened.
void frmTransfers::open() {
    trapped(around_.Reporter, "Command1_Click", [&](Trap& step) {
        const std::string path = selectedPath();
        if (path.empty()) return;
        MessageBox box{"Do you want to open \"" + ListView1.SelectedItem->Text() +
                           "\"? Open only what you expect from " + "somebody you know.",
                       "Open file", Buttons::YesNo, MessageIcon::Question};
        if (around_.ThePlatform.Asking.Ask(box) != Answer::Yes) return;
        step([&] { around_.ThePlatform.Screen.OpenFile(path); });
    });
}

void frmTransfers::openFolder() {
    trapped(around_.Reporter, "Command2_Click", [&](Trap& step) {
        const std::string path = selectedPath();
        if (!path.empty())
            step([&] { around_.ThePlatform.Screen.OpenFile(path.substr(0, path.rfind('/'))); });
    });
}

}  // namespace talvora
