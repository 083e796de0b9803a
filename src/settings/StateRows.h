#pragma once
// The table of states on the settings page, in the order of the menu of states. It edits the file
// System\perflix.lst; a line there that is no state in the page's form keeps its place and its text.

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/Text.h"
#include "settings/LineFile.h"

namespace talvora {

struct StateRow {
    std::string Tag;  // what stands in the brackets behind the nick
    std::string Description;
    int Icon = 2;  // 1 to StateRows::Icons

    bool operator==(const StateRow&) const = default;
};

class StateRows {
  public:
    static constexpr std::size_t MostStates = 50;
    static constexpr int Icons = 8;

    StateRows(Platform& platform, GlobError& globError);

    std::size_t Count() const { return rows_.size(); }
    // Faults with 9 if there is no such row, as all that name one do.
    const StateRow& Row(std::size_t index) const { return elementOf(rows_, index).Row; }

    // A new state at the end. One too many is answered by a message, and with False.
    bool Add();
    void Remove(std::size_t index);
    // What a field cannot hold falls out of it.
    void Change(std::size_t index, StateRow row);
    void Swap(std::size_t index, std::size_t other);

    // Why an edited row cannot work, in plain words; empty if all can.
    std::string Problem() const;
    // Writes the file, if it would become another one.
    void Save(Trap& step);

    Event<> Changed;

  private:
    struct Entry {
        std::string Before;  // the lines in front of it that are kept, with their ends
        std::string Text;    // its own line
        StateRow Row;
        bool Edited = false;
    };

    void readLine(const std::string& line);
    Entry& entry(std::size_t index);
    std::string text() const;

    Platform& platform_;
    LineFile file_;
    std::vector<Entry> rows_;
    std::string behind_;  // the kept lines behind the last row
    std::string saved_;   // as the file stands, but for its line ends
};

}  // namespace talvora
