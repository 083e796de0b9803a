// Models of bars, boxes, lists and trees in their widgets, by code and by hand.

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <QVBoxLayout>

#include "Vocabulary.h"
#include "desktop/Binding.h"
#include "desktop/ListTree.h"
#include "desktop/NodeTree.h"
#include "desktop/QtText.h"

namespace talvora::test {
namespace {

class BindingTest : public testing::Test {
  protected:
    template <class Widget>
    Widget& add(Widget* widget) {
        if (window.layout() == nullptr) new QVBoxLayout(&window);
        window.layout()->addWidget(widget);
        return *widget;
    }
    void show() {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }
    static std::vector<std::string> shown(const QTreeView& view) {
        std::vector<std::string> texts;
        for (QModelIndex at = view.model()->index(0, 0); at.isValid(); at = view.indexBelow(at)) {
            texts.push_back(fromQString(at.data().toString()));
        }
        return texts;
    }

    QWidget window;
    Subscriptions on;
};

TEST_F(BindingTest, AForm) {
    CommandButton send("Send", false);
    TextBox text;
    EditCombo address;
    address.List = {"10.0.0.1", "10.0.0.2"};
    ListBox files;
    int sent = 0, chosen = 0, left = 0;
    on += send.Click.connect([&] { ++sent; });
    on += files.Click.connect([&] { ++chosen; });
    on += text.GotFocus.connect([&] { send.Default = false; });
    on += text.LostFocus.connect([&] {
        send.Default = true;
        ++left;
    });
    auto& box = add(new QComboBox);
    auto& list = add(new QListWidget);
    auto& lines = add(new QPlainTextEdit);
    auto& button = add(new QPushButton);
    attach(on, address, box);
    attach(on, files, list);
    attach(on, text, lines);
    attach(on, send, button);
    show();

    EXPECT_EQ(address.Text.get(), "") << "no line of the list is taken for what was typed";
    QTest::keyClicks(box.lineEdit(), "1");
    EXPECT_EQ(address.Text.get(), "1") << "what is typed isn't completed";
    box.setCurrentIndex(1);
    EXPECT_EQ(address.Text.get(), "10.0.0.2");
    address.Enabled = false;
    EXPECT_FALSE(box.isEnabled());

    for (const char* name : {"a", "b", "c"}) files.AddItem(name);
    list.setCurrentRow(2);
    EXPECT_EQ(chosen, 1);
    files.RemoveItem(0);
    EXPECT_EQ(files.List(files.ListIndex), "c");
    EXPECT_EQ(list.currentItem()->text(), QStringLiteral("c"));
    files.RemoveItem(1);
    EXPECT_EQ(files.ListIndex, -1);
    EXPECT_EQ(list.currentRow(), -1) << "the toolkit's neighbour is not chosen";
    EXPECT_EQ(chosen, 1);

    text.SetFocus();
    QTest::keyClicks(&lines, "one");
    QTest::keyClick(&lines, Qt::Key_Return);
    EXPECT_EQ(text.Text.get(), "one\r\n");
    QTest::keyClick(&lines, Qt::Key_Tab, Qt::ControlModifier);
    list.setFocus();
    EXPECT_EQ(left, 1);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(sent, 0) << "not while it is disabled";
    send.Enabled = true;
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(sent, 1);
}

TEST_F(BindingTest, Bars) {
    ProgressBar progress;
    auto& bar = add(new QProgressBar);
    attach(on, progress, bar);
    progress.SetMax(std::int64_t{3} << 40);
    progress.SetValue(std::int64_t{3} << 39);
    EXPECT_EQ(bar.value() * 2, bar.maximum());
    progress.SetMax(-5);
    EXPECT_EQ(progress.Value(), -5) << "a stranger's number is no fault";
    EXPECT_EQ(bar.value(), 0);

    Toolbar tools;
    tools.Add(ButtonStyle::Press, "Send").Enabled = false;
    tools.Add(ButtonStyle::Separator);
    ToolbarButton& bold = tools.Add(ButtonStyle::Toggle, "Bold");
    std::vector<int> pressed;
    on += tools.ButtonClick.connect([&](const ToolbarButton& button) { pressed.push_back(button.Index); });
    auto& strip = add(new QToolBar);
    attach(on, tools, strip, {});
    strip.actions()[0]->trigger();
    strip.actions()[2]->trigger();
    EXPECT_EQ(pressed, std::vector<int>{3});
    EXPECT_TRUE(bold.Value);
    bold.Value = false;
    EXPECT_FALSE(strip.actions()[2]->isChecked());

    TabStrip tabs({"Incoming", "Outgoing"});
    std::vector<int> clicked;
    on += tabs.Click.connect([&](int index) { clicked.push_back(index); });
    auto& row = add(new QTabBar);
    attach(on, tabs, row);
    show();
    tabs.Selected = 1;
    EXPECT_EQ(row.currentIndex(), 1);
    QTest::mouseClick(&row, Qt::LeftButton, {}, row.tabRect(1).center());
    QTest::mouseClick(&row, Qt::LeftButton, {}, row.tabRect(0).center());
    EXPECT_EQ(clicked, (std::vector<int>{1, 0}));
}

TEST_F(BindingTest, AListSortsByAHeadingAndKeepsItsPlaceOverARefresh) {
    ListView list;
    list.ColumnHeaders = {"From", "Subject"};
    const auto mail = [](int i) {
        const std::string number = std::to_string(1000 + i);
        return ListRow{"key" + number, number, {std::to_string(i % 2)}, 0, {}, i == 3, "tip", {}};
    };
    std::vector<ListRow> rows;
    for (int i = 0; i < 100; ++i) rows.push_back(mail(i));
    list.Refresh(rows);
    on += list.ColumnClick.connect([&](int column) {
        list.Sorted = true;
        list.SortKey = column - 1;
        list.SortOrder =
            list.SortOrder == SortOrder::Ascending ? SortOrder::Descending : SortOrder::Ascending;
    });
    ListModel::Look look;
    look.ClickableHeads = true;
    auto& view = add(new ListTree(list, look, QStringLiteral("Mail")));
    show();
    EXPECT_TRUE(view.model()->index(3, 0).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_EQ(view.model()->index(3, 0).data(Qt::ToolTipRole).toString(), QStringLiteral("tip"));
    list.ColumnHeaders = {"To", "Subject"};
    EXPECT_EQ(view.model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("To"));

    view.setFocus();
    view.setCurrentIndex(view.model()->index(50, 0));
    ASSERT_EQ(list.SelectedItem->Text(), "1050");
    Q_EMIT view.header()->sectionClicked(1);
    EXPECT_EQ(shown(view).front(), "1001") << "the odd ones first, in the order of the list";
    EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("1050"));
    EXPECT_EQ(list.SelectedItem->Text(), "1050");
    EXPECT_EQ(list.ListItems(1).Text(), "1000") << "only what is shown is sorted";

    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
    const int scroll = view.verticalScrollBar()->value();
    ASSERT_GT(scroll, 0);
    int changes = 0;
    on += list.ListItems.RowChanged.connect([&](const ListItem&) { ++changes; });
    rows.push_back(mail(100));
    list.Refresh(rows);
    EXPECT_EQ(changes, 2) << "the new row's sub-item and tool tip";
    rows.erase(rows.begin(), rows.begin() + 2);
    list.Refresh(rows);
    QApplication::processEvents();
    EXPECT_EQ(list.SelectedItem->Key(), "key1050");
    EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("1050"));
    EXPECT_EQ(view.verticalScrollBar()->value(), scroll);
    rows.resize(3);
    list.Refresh(rows);
    EXPECT_EQ(list.SelectedItem->Key(), "key1004") << "the key is gone: the place, as far as there are rows";
    list.Refresh({});
    EXPECT_EQ(list.SelectedItem, nullptr);
}

TEST_F(BindingTest, ARefreshedTreeKeepsItsPlace) {
    TreeView tree;
    std::string clicked;
    on += tree.NodeClick.connect([&](const Node& node) { clicked = node.Key(); });
    const auto fill = [&](int users, int first = 0) {
        TreePlan plan;
        const PlannedNode& root =
            plan.Add({.Name = "Registered Users", .Text = "Registered Users", .Expanded = true});
        const PlannedNode& folded = plan.Add({.Name = "folded", .Text = "folded", .Parent = &root});
        plan.Add({.Name = "inner", .Key = "inner", .Text = "inner", .Parent = &folded});
        for (int i = first; i < users; ++i) {
            const std::string number = std::to_string(i);
            plan.Add({.Name = number, .Key = "key" + number, .Text = "user" + number, .Parent = &root});
        }
        tree.Nodes.Refresh(plan);
        return &tree.Nodes.Root(1);
    };
    auto& view = add(new NodeTree(tree, {}, QStringLiteral("Users")));
    fill(4);
    show();
    EXPECT_EQ(shown(view), (Texts{"Registered Users", "folded", "user0", "user1", "user2", "user3"}));

    Node* root = fill(300);
    QApplication::processEvents();
    view.expand(view.model()->index(0, 0, view.model()->index(0, 0)));
    EXPECT_TRUE(root->Child(1).Expanded());
    view.scrollTo(view.model()->index(200, 0, view.model()->index(0, 0)), QTreeView::PositionAtTop);
    const QPoint top(view.viewport()->width() / 2, 5);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, top);
    EXPECT_EQ(clicked, "key199");
    const int scroll = view.verticalScrollBar()->value();
    clicked.clear();
    Node* selected = tree.SelectedItem;
    QSignalSpy laidOut(view.model(), &QAbstractItemModel::layoutChanged);
    root = fill(300);
    EXPECT_EQ(laidOut.count(), 0) << "nothing differs";
    root->Child(1).SetExpanded(false);
    root = fill(310, 1);
    QApplication::processEvents();
    EXPECT_EQ(laidOut.count(), 1);
    EXPECT_EQ(view.model()->rowCount(view.model()->index(0, 0)), 310);
    EXPECT_FALSE(view.isExpanded(view.model()->index(0, 0, view.model()->index(0, 0))));
    EXPECT_EQ(view.verticalScrollBar()->value(), scroll);
    EXPECT_EQ(tree.SelectedItem, selected);
    EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("user199"));
    EXPECT_EQ(view.currentIndex().row(), 199) << "the row is marked where it is now";
    ASSERT_NE(tree.SelectedItem, nullptr);
    EXPECT_EQ(tree.SelectedItem->Key(), "key199");
    EXPECT_EQ(clicked, "") << "no hand has clicked";
    fill(150);
    EXPECT_EQ(tree.SelectedItem, nullptr);
}

}  // namespace
}  // namespace talvora::test
