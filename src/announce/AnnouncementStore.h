#pragma once
// The list of announcements on disk, one a line, in the order of their arrival. modAnnounceManager owns it.
// Lines are counted from 1; a line's number stays until lines before it are removed.
//
// An appended line is on disk when `Append` returns; a crash in the middle of anything leaves the old list or
// the new one. Everything faults as `Files` does; a list that is not there is fault 53 for readers.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

namespace talvora {

class AnnouncementStore {
  public:
    static constexpr const char* ListFile = "Mail\\Announcements.lst";
    static constexpr const char* NewFile = "Mail\\Announcements.tmp";  // takes its place

    explicit AnnouncementStore(Files& files) : files_(files) {}

    // An empty list if there is none yet.
    void Furnish();
    void Append(const std::string& line);
    // Calls `hear` with the number of each line and the line.
    void ForEach(const std::function<void(int number, const std::string& line)>& hear) const;
    // Leaves the lines that `stays` says yes to.
    void Keep(const std::function<bool(int number, const std::string& line)>& stays);
    // The line that stands last; nothing in an empty list or without one.
    std::optional<std::string> LastLine() const;

  private:
    Files& files_;
};

}  // namespace talvora
