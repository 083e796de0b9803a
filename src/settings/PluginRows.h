#pragma once
// The table of the chat windows' plug-ins on the settings page: which of them go into private and which into
// channel windows. It edits two fields of the file System\plugin.lst and leaves all others alone; a line that
// has not all its fields is kept and not shown. The windows read the file at the next start.

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "settings/LineFile.h"

namespace talvora {

struct PluginRow {
    std::string ProgID;
    std::string Caption;
    bool InPrivates = false;
    bool InChannels = false;
};

class PluginRows {
  public:
    PluginRows(Platform& platform, GlobError& globError);

    std::size_t Count() const { return rows_.size(); }
    // Faults with 9 if there is no such row, as all that name one do.
    const PluginRow& Row(std::size_t index) const;
    void SetInPrivates(std::size_t index, bool in);
    void SetInChannels(std::size_t index, bool in);

    // Writes the file, if a flag has changed; then without its empty lines.
    void Save(Trap& step);

    Event<> Changed;

  private:
    struct Entry {
        std::size_t Line;
        PluginRow Row;
    };

    void readLine(const std::string& line);
    void set(std::size_t index, bool PluginRow::*flag, std::size_t field, bool in);
    std::string text() const;

    LineFile file_;
    std::vector<std::string> lines_;
    std::vector<Entry> rows_;
    std::string saved_;
};

}  // namespace talvora
