#pragma once
// Announcements: asks the robot what is newer than the last one received, keeps what it tells in the list on
// disk, and tells the host. The composition owns one a component.
//
// What could not be written to disk counts as not received, and is asked for again with all that follows it;
// so nothing is lost by a full disk or a crash. What anybody makes unreadable is kept as it came and reported
// once a start.

#include <cstdint>
#include <functional>
#include <string>

#include "announce/AnnouncementStore.h"
#include "common/ComponentSettings.h"
#include "common/HostGate.h"
#include "common/Trap.h"

namespace talvora {

class modAnnounceManager {
  public:
    // Says a special text to the robot.
    using Sender = std::function<void(const std::string& text)>;

    modAnnounceManager(Platform& platform, GlobError& globError, ComponentSettings& settings, HostGate& gate,
                       Sender tellRobot);

    // Reads the last number, and makes an empty list if there is none.
    void Start();
    // What is newer?
    void CheckAnn();
    // What the robot says behind its verb ANN.
    void HandleAnnData(const std::string& Text);
    // Keeps a line and tells the host. True if it is on disk.
    bool WriteAnnouncement(const std::string& Line);
    void Post(const std::string& hours, int category, const std::string& text);

    // `Index` counts the lines of the list from 1.
    void RemoveAnn(int Index);
    void RemoveExpired();

    // Each line with its number; faults as AnnouncementStore does.
    void ForEach(const std::function<void(int number, const std::string& line)>& hear) const {
        store_.ForEach(hear);
    }
    // Whether a line that cannot be read is still to be reported; only the first of a start is.
    bool ReportsUnreadable();

    std::int32_t gAnnID = 0;  // number of the last announcement received

    // One more line stands at the end of the list.
    Event<const std::string&> Stored;

  private:
    void take(Trap& step, const std::string& line);
    void append(const std::string& line);
    bool isLeftOver(const std::string& line);
    bool isSilent(const std::vector<std::string>& fields) const;
    void tellHost(const std::string& text);

    Platform& platform_;
    GlobError& globError_;
    ComponentSettings& settings_;
    HostGate& gate_;
    Sender tellRobot_;
    AnnouncementStore store_;
    bool missed_ = false;  // one could not be kept; what follows it waits for the next question
    bool reported_ = false;
    std::optional<std::string> lastAtStart_;  // the list's last line, while a crash may have left it
};

// The number of an announcement, which its line begins with. Fault 9 for an empty line, 6 beyond 32 bits.
std::int32_t NumberOf(const std::string& line);

}  // namespace talvora
