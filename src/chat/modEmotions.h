#pragma once
// The emoticons: a table of codes and of the RTF that stands for each, read from `system\emoticons.dat`, and
// the replacement of codes in a line that is RTF already. One instance a component.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/GlobError.h"

namespace talvora {

class modEmotions {
  public:
    // What stands between code and RTF in an entry, and for a line end in the RTF.
    static constexpr char Separator = '\x01';
    static constexpr const char* LineEndMark = "[#13]";

    modEmotions(Files& files, GlobError& globError);
    ~modEmotions();
    modEmotions(const modEmotions&) = delete;
    modEmotions& operator=(const modEmotions&) = delete;

    // Has no trap: 53 without the file, 62 if it is empty.
    void LoadEmotions();
    bool IsLoaded() const { return table_ != nullptr; }
    // An empty table: what could not be loaded is not missed at each line anew.
    void DoWithout();

    // A code counts only in front of a blank, which goes with it; one is appended first. Codes are replaced
    // one after the other in the table's order, also within the RTF of earlier ones.
    std::string ReplaceEmotion(std::string Text) const;
    // The same in place.
    void ReplaceEmotionIn(std::string& text) const;

    // The entries, code, Separator, RTF; fault 9 before the table is loaded.
    const std::vector<std::string>& EmotionList() const;
    std::int32_t EmotionCount() const { return emotionCount_; }

    // Codes whose RTF would make a text longer than this stay text: no line holds up the others.
    static constexpr std::size_t LongestText = std::size_t{4} << 20;

  private:
    class Table;

    Files& files_;
    GlobError& globError_;
    std::shared_ptr<const Table> table_;  // nothing until it is loaded
    std::int32_t emotionCount_ = 0;
};

}  // namespace talvora
