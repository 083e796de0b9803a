#pragma once
// Mail on the machine's own disk and store, in a folder that goes with it.

#include <QtCore/QTemporaryDir>
#include <array>
#include <fstream>
#include <memory>
#include <string>

#include "Application.h"
#include "mail/MailFile.h"
#include "mail/MailPanel.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/SqliteSettings.h"
#include "simulation/VirtualPlatform.h"

namespace talvora {

class NoSession final : public MailSession {
    void TellRobot(const std::string&) override {}
    void SetMailRefresh(int) override {}
    void SetMailInterval(std::int32_t) override {}
    void RefreshMailList() override {}
    void ShowIncoming() override {}
};

class NoWindows final : public MailWindows {
    void View(const std::string&) override {}
    void Reply(const std::string&) override {}
    void Write(const std::string&, const std::string&, bool, const std::string&) override {}
    void OpenDraft(const std::string&) override {}
};

class MailFolder {
  public:
    // With so many mails to begin with.
    explicit MailFolder(int count = 0) {
        files.MkDir("Mail");
        for (int number = 1; number <= count; ++number) put(number);
    }

    void put(int number, int lines = 5) {
        std::ofstream file(folder.filePath("data/Mail/").toStdString() + MailFile::IncomingName(number));
        file << MailFile::IncomingHead("Nikos" + std::to_string(number % 50), "14/03/2026 08:30:00",
                                       "13/03/2026 22:00:00", "Subject " + std::to_string(number));
        for (int line = 0; line < lines; ++line) file << std::string(200, 'x') << "\r\n";
        file << MailFile::Tail;
    }
    std::unique_ptr<MailPanel> panel() {
        return std::make_unique<MailPanel>(around, status, manager, drafts, windows);
    }

    Application application;
    QTemporaryDir folder;
    PosixDisk disk{folder.filePath("data").toStdString()};
    Files files{disk};
    SqliteSettings store{folder.filePath("settings.db").toStdString()};
    test::VirtualTime time;
    test::VirtualNetwork network{time};
    test::VirtualPlatform rest{time, network};
    Platform platform{time, network, rest.clock, rest.questions, files, store, rest.screen};
    GlobError reporter{platform};
    ComponentSettings settings{store};
    HostGate gate{settings};
    MailSurroundings around{platform, reporter, settings, gate};
    NoSession session;
    NoWindows windows;
    MailStatus status{platform};
    modMailManager manager{around, status, session};
    MailDrafts drafts{reporter, files};
};

}  // namespace talvora
