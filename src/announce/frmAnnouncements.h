#pragma once
// The window of all stored announcements. It is loaded with the main window, and also keeps the panel of the
// most recent one. It holds the list's lines as it read them; the list on disk is the owner.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "announce/StoredAnnouncement.h"
#include "announce/modAnnounceManager.h"
#include "announce/picAnn.h"
#include "platform/Form.h"
#include "platform/ListView.h"

namespace talvora {

class frmAnnouncements final : public Form {
  public:
    frmAnnouncements(Platform& platform, GlobError& globError, modAnnounceManager& manager, picAnn& panel);

    // A row's tag is the number of its line. The columns: poster, date, what is left in the system's words,
    // the text, and what is left in a person's words.
    ListView ListView1;
    TextBox Text1;   // the text of the chosen row
    TextBox Filter;  // rows that don't hold this are left out
    Label Nothing;   // why there is no row; empty while there is one
    CommandButton Command1{"Close"};
    CommandButton Command2{"Del"};
    CommandButton Command3{"Clear Expired"};

    static constexpr std::size_t DateColumn = 1;
    static constexpr std::size_t RemainingColumn = 2;
    static constexpr std::size_t TextColumn = 3;
    static constexpr std::size_t WordsColumn = 4;

    // Pictures of the rows: one a category, from 1 on; 0 is none, for a category that there is not.
    static constexpr int Pictures = Category::Count;
    static constexpr int ExpiredPicture = 3;

    // Reads the list anew.
    void LoadList();

  protected:
    // The close box only hides the window: the panel lives on what it reads.
    void Form_QueryUnload(bool& cancel, CloseReason reason) override;
    void Form_Unload() override { on_.clear(); }

  private:
    // The youngest that has not expired.
    struct Latest {
        std::optional<std::int64_t> Age;
        std::string WhoAndWhen = "-";
        std::string Text = "(No announcements)";
    };

    // The row of a line. What can't be read is said in plain words, and its fault kept for one report.
    ListRow rowOf(int number, const std::string& line);
    void readParts(ListRow& row, const StoredAnnouncement& told);
    void noteLatest(const StoredAnnouncement& told, std::int64_t age);
    void add(int number, const std::string& line);
    void reportFault(Trap& step);
    void showLatest();
    void fill();
    bool fits(const ListRow& row) const;
    void showChosen();
    void showEmptiness();
    void arrived(const std::string& line);
    void ListView1_ColumnClick(int column);
    void Command2_Click();
    void remove(Trap& step);
    bool agrees();

    Platform& platform_;
    GlobError& globError_;
    modAnnounceManager& manager_;
    picAnn& panel_;
    std::vector<ListRow> rows_;  // of the whole list, in its order; the key is the line
    DateTime readAt_;
    Latest latest_;
    std::optional<RuntimeError> fault_;  // the first that reading the list met
    Subscriptions on_;
};

}  // namespace talvora
