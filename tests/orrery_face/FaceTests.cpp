// The face on a platform in memory: settings window, about, notices' opener, welcome.
#include <gmock/gmock.h>

#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>

#include "Until.h"
#include "common/HostMessageNumbers.h"
#include "orrery/HostDatabase.h"
#include "orrery/ProfileFile.h"
#include "orrery/face/Face.h"
#include "orrery/face/NetworkPage.h"
#include "orrery/face/NoticesPage.h"
#include "orrery/face/Welcome.h"
#include "platform/Form.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

using namespace testing;

// Writes down what becomes of it.
struct FakePage : SettingsPage {
    FakePage(std::string called, std::vector<std::string>& written) : name(std::move(called)), log(written) {}
    ~FakePage() override { log.push_back(name + " gone"); }
    QWidget& Widget() override { return *widget; }
    QString Problem() const override { return problem; }
    void Save() override {
        if (fails) throw RuntimeError(Fault::DiskFull);
        log.push_back(name + " saved");
    }
    void Applied() override { log.push_back(name + " applied"); }

    std::string name;
    std::vector<std::string>& log;
    QString problem;
    bool fails = false;
    std::unique_ptr<QWidget> widget = std::make_unique<QWidget>();
};

class FaceTest : public Test, public VirtualMachine {
  protected:
    FaceTest() {
        around.settings.SaveSetting("Talvora", "Settings", "Nickname", "Maria");
        places.ProfileFile = folder.filePath("network.ini").toStdString();
        face.AddSettingsPage("Class.A", [this] { return made("A"); });
        face.AddSettingsPage("Class.B", [this] { return made("B"); });
        EXPECT_TRUE(face.Begin({database, around.platform, profile, places}));
    }
    ~FaceTest() override { face.End(); }

    std::unique_ptr<SettingsPage> made(const std::string& name) {
        auto page = std::make_unique<FakePage>(name, log);
        pages[name] = page.get();
        return page;
    }
    void answer(const HostMessage& message) {
        if (message.MsgID == HostMsg::GatherPages) {
            for (const char* name : {"Class.A", "Class.Unknown", "Class.B"})
                database.Broadcast({5, 1, -3, "", HostArray{name, "Title", "IRC"}, 0});
            database.Broadcast({5, 1, -3, "", HostArray{1}, 0});
        }
        if (message.MsgID == HostMsg::ApplySettings) log.emplace_back("apply");
        if (message.MsgID == HostMsg::GatherAbout)
            database.Broadcast({19, 1, -2, "", HostArray{"<b>Product", "", 7, "x"}, 0});
    }

    QTemporaryDir folder;
    HostDatabase database;
    NetworkProfile profile;
    Folders places;
    std::vector<std::string> log;
    std::map<std::string, FakePage*> pages;
    Face face{static_cast<GuardedApplication&>(*qApp), QDBusConnection("no bus")};
    Subscription hearing = database.MessageBroadcasted.connect([this](const HostMessage& m) { answer(m); });
};

TEST(Tray, TellsOfTheLineAndOfUnreadMessages) {
    Tray tray({});
    tray.ShowUnread(1);
    EXPECT_EQ(tray.ToolTip(), "Talvora, 1 unread message");
    tray.ShowLine(Tray::Line::On);
    tray.ShowUnread(3);
    EXPECT_EQ(tray.ToolTip(), "Talvora: on line, 3 unread messages");
    tray.ShowUnread(0);
    EXPECT_EQ(tray.ToolTip(), "Talvora: on line");
}

TEST_F(FaceTest, TheTrayComesAfterTheStartAndTellsWhatWasBefore) {
    face.ShowOnLine(false);
    face.ShowUnread(2);
    EXPECT_EQ(face.TheTray(), nullptr);
    face.Started();
    until([&] { return face.TheTray() != nullptr; });
    ASSERT_NE(face.TheTray(), nullptr);
    EXPECT_EQ(face.TheTray()->ToolTip(), "Talvora: off line, 2 unread messages");
}

TEST_F(FaceTest, TheSettingsWindowSavesAllPagesAndThenAppliesThemOnce) {
    face.ShowSettings();
    SettingsWindow* const window = face.TheSettings();
    ASSERT_TRUE(window != nullptr && pages.size() == 2);
    face.ShowSettings();
    EXPECT_EQ(face.TheSettings(), window);
    const auto problems = [&] {
        QStringList texts;
        for (const QLabel* label : window->findChildren<QLabel*>()) texts << label->text();
        return texts.join('\n').toStdString();
    };
    pages["B"]->problem = "No nick.";
    EXPECT_FALSE(window->Save());
    EXPECT_THAT(problems(), HasSubstr("No nick."));
    pages["B"]->problem.clear();
    pages["B"]->fails = true;
    EXPECT_FALSE(window->Save());
    EXPECT_THAT(problems(), HasSubstr("isk full"));
    pages["B"]->fails = false;
    log.clear();
    // Whoever applies may let the user's hands in: the window stays until it is done.
    const auto closing = database.MessageBroadcasted.connect(
        [&](const HostMessage& m) { EXPECT_FALSE(m.MsgID == HostMsg::ApplySettings && window->close()); });
    EXPECT_TRUE(window->Save());
    EXPECT_THAT(log, ElementsAre("A saved", "B saved", "apply", "A applied", "B applied"));
    log.clear();
    around.platform.Guarded.run("A handler of a page", [&] {
        window->close();
        EXPECT_TRUE(log.empty());
    });
    EXPECT_THAT(log, UnorderedElementsAre("A gone", "B gone"));
    EXPECT_EQ(face.TheSettings(), nullptr);
}

TEST_F(FaceTest, TellsWhoIsThereAndGoesInTheMiddleOfIt) {
    face.ShowAbout();
    QMessageBox* about = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* const box = qobject_cast<QMessageBox*>(widget)) about = box;
    }
    ASSERT_TRUE(about != nullptr);
    EXPECT_THAT(about->text().toStdString(), AllOf(StartsWith("Orrery "), EndsWith("\n\n<b>Product\nx")));
    face.ShowSettings();
    face.Close();
    EXPECT_THAT(log, UnorderedElementsAre("A gone", "B gone"));
    face.ShowSettings();
    EXPECT_EQ(face.TheSettings(), nullptr);
}

TEST_F(FaceTest, TheMainWindowComesToTheFrontByMessage3) {
    QWidget window;
    face.SetMainWindow(window);
    window.showMinimized();
    face.OpenMainWindow();
    until([&] { return !window.isMinimized(); });
}

TEST_F(FaceTest, TheNetworkPageKeepsTheCommentsAndNamesWhatCannotBe) {
    QFile file(folder.filePath("network.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("; ours\n[network]\nServerHost = old.test\n");
    file.close();
    profile.ServerHost = "old.test";
    NetworkPage page(profile, places.ProfileFile);
    const auto fields = page.Widget().findChildren<QLineEdit*>();
    const auto enter = [&](const QString& old, const QString& text) {
        for (QLineEdit* field : fields)
            if (field->text() == old) return field->setText(text);
        FAIL() << old.toStdString();
    };
    enter("6667", "70000");
    EXPECT_EQ(page.Problem(), "The port is \"70000\"; a number from 1 to 65535 is allowed.");
    enter("70000", " 6697 ");
    enter("standard", "sometimes");
    EXPECT_THAT(page.Problem().toStdString(), StartsWith("The dialect is \"sometimes\""));
    enter("sometimes", "standard +pacing");
    enter("old.test", "new.test");
    EXPECT_EQ(page.Problem(), "");
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("SysChannel = #byhand\n");
    file.close();
    page.Save();
    EXPECT_FALSE(QFile::permissions(file.fileName()) & (QFile::ReadGroup | QFile::ReadOther));
    EXPECT_EQ(profile.ServerHost + std::to_string(profile.ServerPort), "new.test6697");
    const NetworkProfile read = readProfile(places.ProfileFile, true);
    EXPECT_TRUE(read.ServerPort == 6697 && read.Wire.has(Rewrite::Pacing) && read.SysChannel == "#byhand");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readLine() == "; ours\n");

    NetworkPage lost(profile, "/dev/null/network.ini");
    lost.Widget().findChildren<QLineEdit*>().front()->setText("other.test");
    EXPECT_THROW(lost.Save(), ProfileFileError);
    EXPECT_EQ(profile.ServerHost, "new.test");
}

TEST_F(FaceTest, ThePrivacyOfNoticesIsTheHostsOwnSetting) {
    NoticesPage page(around.settings);
    page.Widget().findChildren<QAbstractButton*>()[1]->click();
    page.Save();
    EXPECT_EQ(savedPrivacy(around.settings), NoticePrivacy::NameOnly);
    EXPECT_EQ(around.settings.GetSetting("Orrery", "Notices", "Privacy", ""), "1");
}

TEST(TheWelcome, AsksForNickPlaceAndNetworkAndNothingElse) {
    const QTemporaryDir folder;
    const std::string file = folder.filePath("network.ini").toStdString();
    MemorySettings settings;
    NetworkProfile profile;
    EXPECT_TRUE(isFirstStart(settings));
    const auto start = [&](const char* nick, const char* path, const char* port,
                           const std::string& profileFile) {
        Welcome dialog(settings, profile, profileFile);
        EXPECT_EQ(dialog.findChildren<QLineEdit*>().size(), 4);
        const std::pair<const char*, const char*> fields[] = {{"nick", nick}, {"path", path}, {"port", port}};
        for (const auto& [name, text] : fields) dialog.findChild<QLineEdit*>(name)->setText(text);
        dialog.accept();
        return dialog.result() == QDialog::Accepted;
    };
    for (const char* nick : {"", "two words", "Maria[DND]", "7up"})
        EXPECT_FALSE(start(nick, "Work.Pylea", "6667", file)) << nick;
    for (const char* path : {"", "Work..Pylea", ".Work"})
        EXPECT_FALSE(start("Maria", path, "6667", file)) << path;
    EXPECT_FALSE(start("Maria", "Work.Pylea", "0", file));
    EXPECT_FALSE(start("Maria", "Work.Pylea", "7000", "/dev/null/network.ini"));
    EXPECT_TRUE(isFirstStart(settings) && profile.ServerPort == 6667);
    EXPECT_TRUE(start("Μαρία", "Work.Pylea", "7000", file));
    EXPECT_FALSE(isFirstStart(settings));
    EXPECT_EQ(settings.GetSetting("Talvora", "Settings", "Nickname", ""), "\xCC\xE1\xF1\xDF\xE1");
    EXPECT_EQ(settings.GetSetting("Talvora", "Settings", "RealName", ""), "Work.Pylea");
    EXPECT_TRUE(profile.ServerPort == 7000 && readProfile(file, true).ServerPort == 7000);
}

}  // namespace
}  // namespace talvora::test
