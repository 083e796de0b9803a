// Takes a picture of each window in a typical state: windows_pictures DIR [dark]. QT_SCALE_FACTOR=2 makes
// them as a screen of high resolution has them.

#include "simulation/windows/Pictures.h"

#include <QDir>
#include <QListWidget>
#include <QScreen>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "desktop/QtQuestions.h"
#include "orrery/face/NetworkPage.h"
#include "orrery/face/NoticesPage.h"
#include "orrery/face/SettingsWindow.h"
#include "orrery/face/Welcome.h"

namespace talvora::test {
namespace {

std::string fileOf(const char* name) {
    std::ifstream file(std::string(TALVORA_SOURCE_DIR "/data/System/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

QPalette darkPalette() {
    QPalette palette(QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    palette.setColor(QPalette::Highlight, QColor(0x35, 0x74, 0xf0));
    return palette;
}

void furnish(DesktopWorld& desktop) {
    desktop.client.around.disk.put("System/emoticons.dat", fileOf("emoticons.dat"));
    desktop.client.around.disk.put("System/perflix.lst", fileOf("perflix.lst"));
    desktop.client.around.disk.put("System/plugin.lst",
                                   "Shout.Plugin F T F F Say it loud\r\n"
                                   "<SYS>.plg_Encrypt T F 0 0 Encryption\r\n");
    desktop.client.around.disk.put("System/Friends.lst",
                                   greek("Anna\r\nNikos\r\nKostas\r\nΠαναγιώτα_Παπαδοπούλου\r\nDimitra"));
    desktop.client.around.disk.put("System/script_cmd.dat",
                                   "part\x01PART #thessaloniki\r\nbrb\x01NICK %0 Maria[AWAY]\x02"
                                   "ECHO Back soon\r\n");
    desktop.client.around.questions.answerFaults(Answer::Ignore);
}

void takeHost(DesktopWorld& desktop, Photographer& photographer) {
    std::vector<SettingsWindow::Page> pages;
    pages.push_back({QStringLiteral("Talvora IRC"), desktop.face.icons["IRC"],
                     desktop.face.pages["TalvoraClient.Settings"]()});
    pages.push_back(
        {QStringLiteral("Network"), {}, std::make_unique<NetworkPage>(desktop.client.profile, "")});
    pages.push_back(
        {QStringLiteral("Notices"), {}, std::make_unique<NoticesPage>(desktop.client.around.settings)});
    SettingsWindow settings(std::move(pages), {[] {}, [] {}});
    settings.show();
    auto* list = settings.findChild<QListWidget*>();
    for (int page = 0; page < list->count(); ++page) {
        list->setCurrentRow(page);
        desktop.settle();
        photographer.take(&settings, ("settings-" + std::to_string(page + 1)).c_str());
    }
    if (auto* tabs = settings.findChild<QTabWidget*>()) {
        list->setCurrentRow(0);
        for (int tab = 1; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            desktop.settle();
            photographer.take(&settings, ("settings-1-" + std::to_string(tab + 1)).c_str());
        }
    }
    Welcome welcome(desktop.client.around.settings, desktop.client.profile, "");
    welcome.show();
    desktop.settle();
    photographer.take(&welcome, "welcome");

    QtQuestions questions;
    MessageBox box{
        "WARNING! A critical error has occured on Talvora core!\r\n\r\nDescription: Path not "
        "found\r\nNumber: 76",
        "Critical error", Buttons::AbortRetryIgnore, MessageIcon::Critical};
    box.Suppressed = 3;
    desktop.client.around.platform.TheLoop.Defer([] {});
    QTimer::singleShot(300, [&] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || window->windowTitle() != QStringLiteral("Critical error")) continue;
            photographer.take(window, "report");
            window->close();
        }
    });
    questions.Ask(box);
}

int run(const QString& folder, bool dark) {
    QDir().mkpath(folder);
    if (dark) QApplication::setPalette(darkPalette());
    const bool large = QApplication::primaryScreen()->devicePixelRatio() > 1.5;
    Photographer photographer(folder, QStringLiteral("%1%2").arg(dark ? QStringLiteral("-dark") : QString(),
                                                                 large ? QStringLiteral("@2x") : QString()));
    DesktopWorld desktop;
    furnish(desktop);
    putMails(desktop);
    desktop.logOn();
    desktop.says(":srv 266 Maria :Current global users: 5007  Max: 5100");
    fillChannel(desktop);
    takePeople(desktop, photographer);
    takeMails(desktop, photographer);
    takeSmall(desktop, photographer);
    takeAnnouncements(desktop, photographer);
    takeTransfers(desktop, photographer);
    takeScripts(desktop, photographer);
    takeBar(desktop, photographer);
    takeHost(desktop, photographer);
    takeChats(desktop, photographer);
    return photographer.Complete() ? 0 : 1;
}

}  // namespace
}  // namespace talvora::test

int main(int argc, char** argv) {
    talvora::GuardedApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc < 2) {
        std::fputs("usage: windows_pictures DIR [dark]\n", stderr);
        return 2;
    }
    return talvora::test::run(QString::fromLocal8Bit(argv[1]),
                              argc > 2 && std::string_view(argv[2]) == "dark");
}
