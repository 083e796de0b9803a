#pragma once
// The pictures of all windows in a typical state: what takes them, and the scenes by feature. A scene brings
// the client where it is worth a picture and leaves it there for the next.

#include <QString>
#include <QWidget>
#include <cstdio>
#include <string>
#include <utility>

#include "desktop/ListTree.h"
#include "desktop/RichTextView.h"
#include "platform/CodePage1253.h"
#include "simulation/windows/DesktopWorld.h"

namespace talvora::test {

inline std::string greek(const char* utf8) {
    return fromUtf8(utf8);
}

// Writes a window into its folder, as NAME with the suffix of the run.
class Photographer {
  public:
    Photographer(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

    void take(QWidget* window, const char* name) {
        if (window == nullptr) {
            std::fprintf(stderr, "There is no %s.\n", name);
            complete_ = false;
            return;
        }
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            if (auto* view = dynamic_cast<RichTextView*>(widget)) view->settle();
            if (auto* list = dynamic_cast<ListTree*>(widget)) list->settle();
        }
        const QString file = QStringLiteral("%1/%2%3.png").arg(folder_, QString::fromLatin1(name), suffix_);
        complete_ = window->grab().save(file) && complete_;
    }
    bool Complete() const { return complete_; }

  private:
    QString folder_;
    QString suffix_;
    bool complete_ = true;
};

void fillChannel(DesktopWorld& desktop);
void fillTree(DesktopWorld& desktop);
void putMails(DesktopWorld& desktop);

void takePeople(DesktopWorld& desktop, Photographer& photographer);
void takeBar(DesktopWorld& desktop, Photographer& photographer);
void takeChats(DesktopWorld& desktop, Photographer& photographer);
void takeSmall(DesktopWorld& desktop, Photographer& photographer);
void takeScripts(DesktopWorld& desktop, Photographer& photographer);
void takeMails(DesktopWorld& desktop, Photographer& photographer);
void takeAnnouncements(DesktopWorld& desktop, Photographer& photographer);
void takeTransfers(DesktopWorld& desktop, Photographer& photographer);

}  // namespace talvora::test
