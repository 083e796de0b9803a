// The end of a reply of who is on line, ten thousand users of five hundred places, two hundred of them
// friends: from it until the main window's tree has been painted again and the lists beside it hold what
// differs.

#include <QScrollBar>
#include <QTabWidget>
#include <QTreeView>
#include <string>

#include "EngineAccess.h"
#include "desktop/Measure.h"
#include "simulation/windows/DesktopWorld.h"

namespace {

using namespace talvora;
using namespace talvora::measure;

constexpr int users = 10'000;
constexpr int places = 500;
constexpr int changing = 100;
constexpr int friends = 200;

std::string friendsFile() {
    std::string lines;
    for (int n = 0; n < friends; ++n) lines += "Nikos" + std::to_string(n * (users / friends)) + "\r\n";
    return lines;
}

class People {
  public:
    People() {
        desktop_.client.around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\nOFFLINE|Offline|1");
        desktop_.client.around.disk.put("System/Friends.lst", friendsFile());
        desktop_.logOn();
        tabs_ = desktop_.viewOf(&desktop_.client.window())->findChild<QTabWidget*>();
    }

    // Of the view on a tab, scrolled to its middle. One of a hundred users changes in each second reply.
    void measure(const char* name, int tab, bool changes) {
        tabs_->setCurrentIndex(tab);
        calm();
        auto* tree = tabs_->currentWidget()->findChild<QTreeView*>();
        if (tree == nullptr) tree = qobject_cast<QTreeView*>(tabs_->currentWidget());
        Glance glance(*tree->viewport());
        int round = 0;
        const auto shown = [&] {
            reply(changes && ++round % 2 == 0);
            return millisecondsOf([&] {
                handle(":srv 315 Maria * :End");
                tree->viewport()->update();
                glance.wait();
            });
        };
        shown();
        tree->verticalScrollBar()->setValue(tree->verticalScrollBar()->maximum() / 2);
        calm();
        print(name, [&] {
            const double took = shown();
            calm();
            return took;
        });
    }

  private:
    void handle(const std::string& line) { IRCServBench::handle(desktop_.client.window().IRCServ1, line); }
    void reply(bool changed) {
        for (int n = 0; n < users; ++n) {
            const std::string number = std::to_string(n * 7919 % users);
            const bool disturbed = changed && n % (users / changing) == 0;
            handle(":srv 352 Maria * u host" + number + ".net srv Nikos" + number +
                   (disturbed ? "[DND]" : "") + " H :0 UL:GR.Town" + std::to_string(n % places));
        }
    }

    test::DesktopWorld desktop_;
    QTabWidget* tabs_;
};

}  // namespace

int main(int argc, char** argv) {
    const GuardedApplication application(argc, argv);
    People people;
    constexpr int friendsTab = 0, treeTab = 1;
    people.measure("people.who_10000_ms", treeTab, false);
    people.measure("people.who_changed_ms", treeTab, true);
    people.measure("people.who_changed_friends_ms", friendsTab, true);
    return 0;
}
