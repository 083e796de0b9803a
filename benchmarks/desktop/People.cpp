// The end of a reply of who is on line, ten thousand users of five hundred places, two hundred of them
// friends: from it until the tree and the list of friends, side by side in a window, have been painted again.

#include <QHBoxLayout>
#include <QScrollBar>
#include <string>

#include "BenchSession.h"
#include "desktop/GuardedApplication.h"
#include "desktop/ListTree.h"
#include "desktop/Measure.h"
#include "desktop/NodeTree.h"

namespace {

using namespace talvora;
using namespace talvora::measure;

constexpr int users = 10'000;
constexpr int places = 500;
constexpr int changing = 100;

ListModel::Look friendsLook() {
    ListModel::Look look;
    look.Columns = {QStringLiteral("Friends")};
    look.Sorting = ListModel::Order::ByName;
    look.Lesser = [](const ListItem& user) { return PresencePanel::IsMarkedOffline(user.Key()); };
    return look;
}

class People {
  public:
    People()
        : tree_(session_.window().Users.UserTree1.TreeView1, {}, QStringLiteral("Users")),
          friends_(session_.window().UserList2.ListView1, friendsLook(), QStringLiteral("Friends")) {
        auto* row = new QHBoxLayout(&window_);
        row->addWidget(&tree_);
        row->addWidget(&friends_);
        window_.resize(640, 480);
        window_.show();
        reply(false);
        shown();
        tree_.verticalScrollBar()->setValue(tree_.verticalScrollBar()->maximum() / 2);
    }

    // One of a hundred users changes his state with each reply, if any.
    void measure(const char* name, bool changes) {
        bool changed = false;
        print(name, [&] {
            changed = changes && !changed;
            reply(changed);
            return shown();
        });
    }

  private:
    double shown() {
        Glance tree(*tree_.viewport());
        Glance friends(*friends_.viewport());
        const double took = millisecondsOf([&] {
            session_.handle(":srv 315 me * :End");
            tree_.viewport()->update();
            friends_.viewport()->update();
            tree.wait();
            friends.wait();
        });
        calm();
        return took;
    }
    void reply(bool changed) {
        for (int n = 0; n < users; ++n) {
            const std::string number = std::to_string(n * 7919 % users);
            const bool disturbed = changed && n % (users / changing) == 0;
            session_.handle(":srv 352 me * u host" + number + ".net srv Nikos" + number +
                            (disturbed ? "[DND]" : "") + " H :0 UL:GR.Town" + std::to_string(n % places));
        }
    }

    BenchSession session_;
    QWidget window_;
    NodeTree tree_;  // goes before its window
    ListTree friends_;
};

}  // namespace

int main(int argc, char** argv) {
    const GuardedApplication application(argc, argv);
    People people;
    people.measure("people.who_10000_ms", false);
    people.measure("people.who_changed_ms", true);
    return 0;
}
