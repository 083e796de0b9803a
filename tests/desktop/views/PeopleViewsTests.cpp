// The users on line and the friends in the main window, by hand.

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTabWidget>
#include <memory>

#include "Vocabulary.h"
#include "desktop/NodeTree.h"
#include "desktop/views/WindowsFixture.h"

namespace talvora::test {
namespace {

class PeopleViewsTest : public WindowsTest {
  protected:
    void who(const Texts& users) {
        for (const std::string& user : users) client.server.says(":srv 352 Maria * u h srv " + user);
        says(":srv 315 Maria * :End");
    }
    QWidget* main() { return viewOf(&client.window()); }
    QTabWidget& tabs() { return *main()->findChild<QTabWidget*>(); }
    // What stands in the tree unfolded, a group with its number.
    Texts shown() {
        Texts texts;
        const QTreeView& tree = *list(main(), "Users on line");
        for (QModelIndex at = tree.model()->index(0, 0); at.isValid(); at = tree.indexBelow(at)) {
            const QString count = at.data(TreeModel::CountRole).toString();
            texts.push_back(fromQString(at.data().toString() + (count.isEmpty() ? "" : " #") + count));
        }
        return texts;
    }
    // A row of the list is dragged onto the widget.
    static void drop(const QTreeView& from, const QModelIndex& row, QWidget* onto) {
        const std::unique_ptr<QMimeData> carried(from.model()->mimeData({row}));
        if (carried != nullptr) drop(*carried, onto);
    }
    static void drop(const QMimeData& data, QWidget* onto) {
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(onto, &enter);
        QDropEvent event(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(onto, &event);
    }
};

TEST_F(PeopleViewsTest, ANickIsFoundInTheTree) {
    tabs().setCurrentIndex(1);
    who({"Anna[AWAY] H :0 UL:Home.Town", "Nikos H :0 UL:Home.Port", "Zoe H :0 nobody"});
    QTreeView* tree = list(main(), "Users on line");
    tree->collapse(tree->model()->index(0, 0, tree->model()->index(0, 0)));
    const Texts folded = {"Registered Users #2", "Home #2", "Unknown users #1", "zoe (Online)"};
    const Texts all = shown();
    ASSERT_EQ(all.size(), folded.size());

    auto* box = named<QLineEdit>(main(), "Find a nick");
    QTest::keyClicks(box, "NIK");
    EXPECT_THAT(shown(), ElementsAre("Registered Users #1", "Home #1", "Port #1", HasSubstr("Nikos")));
    EXPECT_THAT(fromQString(tree->currentIndex().data().toString()), HasSubstr("Nikos"));
    who({"Nikos H :0 UL:Home.Port", "Nikoleta H :0 UL:Home.Port", "Zoe H :0 nobody"});
    EXPECT_THAT(shown(), ElementsAre("Registered Users #2", "Home #2", "Port #2", HasSubstr("Nikos"),
                                     HasSubstr("Nikoleta")));
    EXPECT_THAT(fromQString(tree->currentIndex().data().toString()), HasSubstr("Nikos"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_NE(chats().Privates.Window("Nikos"), nullptr);
    QTest::keyClicks(box, "!");
    EXPECT_THAT(shown(), IsEmpty());
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_EQ(shown().size(), folded.size()) << "what was folded is so again";
}

TEST_F(PeopleViewsTest, FriendsComeFirstAndByDragging) {
    who({"Zoe H :0 nobody", "Nikos[AWAY] H :0 UL:Home.Port"});
    QTreeView* tree = list(main(), "Users on line");
    QTreeView* friends = list(main(), "Friends");
    const QModelIndex unknown = tree->model()->index(1, 0);
    drop(*tree, unknown, friends->viewport());
    EXPECT_THAT(rows(friends), IsEmpty()) << "a group is nobody's friend";
    drop(*tree, tree->model()->index(0, 0, unknown), friends->viewport());
    QMimeData foreign;
    foreign.setData(QStringLiteral("application/x-talvora-nick"), "Mallory");
    drop(foreign, friends->viewport());
    EXPECT_THAT(rows(friends), ElementsAre(HasSubstr("Zoe")));
    const QModelIndex port =
        tree->model()->index(0, 0, tree->model()->index(0, 0, tree->model()->index(0, 0)));
    drop(*tree, tree->model()->index(0, 0, port), friends->viewport());
    EXPECT_THAT(rows(friends), ElementsAre(HasSubstr("Nikos (Away"), HasSubstr("Zoe")));

    who({"Zoe H :0 nobody"});
    EXPECT_THAT(rows(friends), ElementsAre(HasSubstr("Zoe"), HasSubstr("Nikos")));
    const auto slanted = [&](int row) {
        return friends->model()->index(row, 0).data(Qt::FontRole).value<QFont>().italic();
    };
    EXPECT_FALSE(slanted(0));
    EXPECT_TRUE(slanted(1));

    // The menu by keyboard.
    friends->setFocus();
    friends->setCurrentIndex(friends->model()->index(1, 0));
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(friends->viewport(), &menu);
    choose("&Remove from friends");
    EXPECT_THAT(rows(friends), ElementsAre(HasSubstr("Zoe")));
}

}  // namespace
}  // namespace talvora::test
