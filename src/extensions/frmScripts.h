#pragma once
// The window in which the user keeps his scripts: commands of private windows, and the commands of the menus
// of channel and private windows, each on its tab. It works on copies; OK writes the files and has the
// scripts read anew.

#include <array>
#include <string>
#include <vector>

#include "extensions/modCommands.h"
#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/ListBox.h"

namespace talvora {

class frmScripts final : public Form {
  public:
    static constexpr int Tabs = 3;

    frmScripts(Platform& platform, GlobError& globError, modCommands& commands);

    TabStrip TabStrip1{{"Commands", "Channel Menu", "PM Menu"}};
    Label Label1{"Entries:"};
    Label Label2{"Server commands:"};
    Label Label3;  // what the window is for
    ListBox List1;
    TextBox EntryName;  // of the chosen entry; what is typed renames it
    TextBox Text1;      // its script, one line a command
    Label Problem;      // why the chosen entry can't work; empty if it can
    CommandButton Add{"Add"};
    CommandButton Remove{"Remove"};
    CommandButton Ok{"&OK"};
    CommandButton Cancel{"Cancel"};

    // Reads the files. By its owner, before the window shows.
    void Form_Load();

  private:
    ScriptEntries& tab() { return tabs_[static_cast<std::size_t>(TabStrip1.Selected.get())]; }
    ScriptEntry* chosen();
    void showTab();
    void showEntry();
    void entryEdited();
    void add();
    void remove();
    void accept();
    bool findProblem();
    std::string problemOf(const ScriptEntry& entry, int tab) const;

    Platform& platform_;
    GlobError& globError_;
    modCommands& commands_;
    std::array<ScriptEntries, Tabs> tabs_;
    std::array<bool, Tabs> read_{};  // a file that could not be read is not written over
    bool showing_ = false;           // the boxes are filled by code
    Subscriptions on_;
};

}  // namespace talvora
