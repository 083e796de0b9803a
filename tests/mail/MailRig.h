#pragma once
// The manager of mail alone, with a robot that keeps to the protocol, on a disk and a store that can die
// together at any change of either.

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "mail/modMailManager.h"
#include "platform/Text.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {

class DyingSettings final : public SettingsStore {
  public:
    explicit DyingSettings(MemoryDisk& disk) : disk_(disk) {}
    int savesToDeath = -1;  // counted from 0
    MemorySettings kept;

    std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                           std::string_view fallback) const override {
        return kept.GetSetting(app, section, key, fallback);
    }
    void SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                     std::string_view value) override {
        if (savesToDeath-- == 0) dead = true;
        if (savesToRefusal >= 0 && --savesToRefusal < 0) refuses = true;
        if (refuses || dead || disk_.died()) throw RuntimeError(Fault::DeviceIOError);
        kept.SaveSetting(app, section, key, value);
    }
    bool dead = false;
    int savesToRefusal = -1;  // from then on the program lives, and cannot save
    bool refuses = false;

  private:
    MemoryDisk& disk_;
};

// What the robot has for the client, and what it took from it.
struct RobotSide {
    struct Mail {
        int id;
        std::vector<std::string> lines;
    };
    std::deque<Mail> waiting;
    std::vector<std::string> taken;  // header and pieces of each confirmed mail, joined by "/"
    std::deque<std::string> says;

    void hears(const std::string& text) {
        const std::string verb = text.substr(0, text.find(' ', 5));
        if (text.starts_with("MAIL 0 ")) {
            if (doneTold_) waiting.pop_front();
            begin();
        } else if (text.starts_with("MAIL  ")) {
            resume(Split(text, " "));
        } else if (text == "MAIL OK") {
            next();
        } else if (text == "MAIL SENDREQUEST") {
            says.emplace_back("SENDOK");
        } else if (verb == "MAIL SEND") {
            taking_ = {text.substr(10)};
            says.emplace_back("OK");
        } else if (verb == "MAIL DUMP" || verb == "MAIL SENT") {
            taking_.push_back(text.substr(10));
            says.emplace_back(verb == "MAIL DUMP" ? "OK" : "SENTDONE");
            const std::string whole = Join(taking_, "/");
            if (verb == "MAIL SENT" && (taken.empty() || taken.back() != whole)) taken.push_back(whole);
        }
    }
    void forgetDialogue() {
        says.clear();
        giving_ = false;
    }

  private:
    void begin() {
        doneTold_ = giving_ = false;
        if (waiting.empty()) return says.emplace_back("NOMAIL"), void();
        const Mail& mail = waiting.front();
        at_ = 0;
        giving_ = true;
        says.push_back("START Nikos 24/11/2026_20:24:28 " + std::to_string(mail.lines.size()) + " " +
                       std::to_string(mail.id) + " Dinner");
    }
    void resume(const std::vector<std::string>& words) {
        if (waiting.empty() || std::to_string(waiting.front().id) != words.at(2))
            return says.emplace_back("NOTEXIST"), void();
        at_ = static_cast<std::size_t>(std::stoi(words.at(3)));
        giving_ = true;
        says.emplace_back("RESUME");
    }
    void next() {
        if (!giving_ || waiting.empty()) return;
        const auto& lines = waiting.front().lines;
        if (at_ < lines.size()) return says.push_back("DUMP " + lines[at_++]), void();
        doneTold_ = true;
        giving_ = false;
        says.emplace_back("DONE");
    }

    std::size_t at_ = 0;
    bool giving_ = false;
    bool doneTold_ = false;
    std::vector<std::string> taking_;
};

class MailRig : public MailSession {
  public:
    MailRig() {
        around.disk.put("Mail/.keep", "");
        around.questions.answerFaults(Answer::Abort);
        start();
    }

    // The program begins to run on what the last one left.
    void start() {
        manager.reset();
        status.reset();
        settings.dead = false;
        settings.savesToDeath = -1;
        status = std::make_unique<MailStatus>(around.platform);
        manager = std::make_unique<modMailManager>(surroundings, *status, *this);
        manager->LoadSettings();
    }
    void crashAndStart(MemoryDisk::Survived survived) {
        manager.reset();
        around.disk.restart(survived);
        robot.forgetDialogue();
        start();
    }
    bool died() const { return settings.dead || around.disk.died(); }
    // The dialogue goes on until nobody has anything to say.
    void talk() {
        while (!robot.says.empty() && !died()) {
            const std::string line = robot.says.front();
            robot.says.pop_front();
            manager->HandleMailCmd(line);
        }
    }
    std::string stored(const char* key) {
        return settings.kept.GetSetting("Talvora", "Incompleted", key, "0");
    }
    std::string file(const std::string& name) { return around.disk.content("Mail/" + name).value_or("-"); }

    VirtualTime time;
    VirtualNetwork network{time};
    VirtualPlatform around{time, network};
    DyingSettings settings{around.disk};
    GlobError reporter{around.platform};
    ComponentSettings view{settings};
    HostGate gate{view};
    MailSurroundings surroundings{around.platform, reporter, view, gate};
    RobotSide robot;
    std::vector<std::string> told;
    int refreshMs = 0;
    int refreshes = 0;
    std::unique_ptr<MailStatus> status;
    std::unique_ptr<modMailManager> manager;

  private:
    void TellRobot(const std::string& text) override {
        if (died()) return;
        told.push_back(text);
        robot.hears(text);
    }
    void SetMailRefresh(int milliseconds) override { refreshMs = milliseconds; }
    void SetMailInterval(std::int32_t) override {}
    void RefreshMailList() override { ++refreshes; }
    void ShowIncoming() override { ++refreshes; }
};

}  // namespace talvora::test
