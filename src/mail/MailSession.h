#pragma once
// What mail asks of the program around it. The composition implements it.

#include <cstdint>
#include <string>
#include <vector>

#include "common/ComponentSettings.h"
#include "common/GlobError.h"
#include "common/HostGate.h"
#include "platform/Platform.h"

namespace talvora {

class MailSession {
  public:
    virtual ~MailSession() = default;
    // A special text to the robot.
    virtual void TellRobot(const std::string& text) = 0;
    // The period in which the main window looks for mail.
    virtual void SetMailRefresh(int milliseconds) = 0;
    // Minutes before its first look.
    virtual void SetMailInterval(std::int32_t minutes) = 0;
    // The store has changed; the list of mails is to be drawn anew.
    virtual void RefreshMailList() = 0;
    // The list falls back to the incoming mails, and its tabs don't follow.
    virtual void ShowIncoming() = 0;
};

// Whom a mail can be written to. Without friends or a connection a list is empty.
class MailPeople {
  public:
    virtual ~MailPeople() = default;
    // Bare nicks.
    virtual std::vector<std::string> Friends() const = 0;
    // As they came in the last list of users on line.
    virtual std::vector<std::string> OnLine() const = 0;
};

// What all of mail lives on; it outlives mail.
struct MailSurroundings {
    Platform& ThePlatform;
    GlobError& Reporter;
    ComponentSettings& Settings;
    HostGate& Gate;
};

}  // namespace talvora
