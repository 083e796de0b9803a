#pragma once
// Announcements: takes those that users post, by the rules of their category, and tells those who ask what is
// newer than the last one that they have.

#include <optional>
#include <string>
#include <string_view>

#include "robot/FairQueue.h"
#include "robot/LineRoom.h"
#include "robot/RobotConfig.h"
#include "robot/RobotLog.h"
#include "robot/RobotStore.h"

namespace talvora {

class AnnouncementDesk {
  public:
    // Told in answer to one question; the next question brings more.
    static constexpr int AtATime = 20;

    AnnouncementDesk(Platform& platform, const RobotConfig& config, RobotStore& store, FairQueue& out,
                     RobotLog log);

    // "HAS n" and "POST hours category text". False for any other word.
    bool Handle(const Caller& caller, std::string_view verb, std::string_view rest);

  private:
    void tellNews(const Caller& caller, std::string_view has);
    void post(const Caller& caller, std::string_view rest);
    bool mayPost(const Caller& caller, const CategoryRules& rules) const;
    // What is wrong with it, in words for its poster; empty if it is right.
    std::string objection(const Caller& caller, const Announcement& wanted) const;
    void refuse(const Caller& caller, const std::string& reason);
    void say(const Caller& caller, const std::string& text);

    Clock& clock_;
    const RobotConfig& config_;
    RobotStore& store_;
    FairQueue& out_;
    RobotLog log_;
    LineRoom lines_;
};

}  // namespace talvora
