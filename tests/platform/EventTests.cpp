#include <gtest/gtest.h>

#include <memory>

#include "platform/ListView.h"
#include "platform/Property.h"
#include "platform/RuntimeError.h"

namespace talvora::test {
namespace {

TEST(Event, HandlersMayComeAndGoWhileItIsRaised) {
    Event<int> event;
    std::string path;
    Subscription own;
    Subscription late;
    Subscription victim;
    own = event.connect([&](int) {
        path += "a";
        own.disconnect();
        victim.disconnect();
        late = event.connect([&](int) { path += "late"; });
    });
    victim = event.connect([&](int) { path += "victim"; });
    const Subscription last = event.connect([&](int) { path += "b"; });
    event.raise(1);
    EXPECT_EQ(path, "ab");
    event.raise(2);
    EXPECT_EQ(path, "abblate");
}

TEST(Event, MayBeDestroyedByItsOwnHandlerAndOutlivedByItsSubscriptions) {
    auto event = std::make_unique<Event<>>();
    int calls = 0;
    const Subscription first = event->connect([&] {
        ++calls;
        event.reset();
    });
    const Subscription second = event->connect([&] { ++calls; });
    event->raise();
    EXPECT_EQ(calls, 2);
}

TEST(Event, NestedRaisesAndAnswersByReferenceWork) {
    Event<bool&, int> event;
    int depth = 0;
    const Subscription nested = event.connect([&](bool& cancel, int n) {
        depth = std::max(depth, n);
        if (n < 5) event.raise(cancel, n + 1);
        cancel = true;
    });
    bool cancel = false;
    event.raise(cancel, 1);
    EXPECT_TRUE(cancel);
    EXPECT_EQ(depth, 5);
}

TEST(Property, TellsOnlyRealChanges) {
    Property<std::string> caption;
    std::string told;
    const Subscription s =
        caption.Changed.connect([&](const std::string& text) { told += "[" + text + "]"; });
    caption = "";
    caption = "a";
    caption = "a";
    caption = "b";
    EXPECT_EQ(told, "[a][b]");
}

TEST(ListView, TellsWhichRowsCameChangedAndWentAndRaisesNothingForCode) {
    ListView list;
    std::string told;
    Subscriptions on;
    on += list.ListItems.RowInserted.connect([&](int index) { told += "+" + std::to_string(index); });
    on += list.ListItems.RowChanged.connect([&](const ListItem& row) { told += "~" + row.Text(); });
    on += list.ListItems.RowRemoved.connect(
        [&](int index, const ListItem& gone) { told += "-" + std::to_string(index) + gone.Text(); });
    on += list.ListItems.Cleared.connect([&] { told += "!"; });
    on += list.ItemCheck.connect([&](ListItem& row) { told += "?" + row.Text(); });
    ListItem& row = list.ListItems.Add("", "a");
    row.SetChecked(true);
    row.SetSubItem(2, "x");
    row.SetSubItem(2, "x");
    list.userTicks(row, true);
    list.userTicks(row, false);
    ListItem& second = list.ListItems.Add("", "b");
    second.SetText("c");
    second.SetText("c");
    list.userSelects(row);
    list.ListItems.Remove(row);
    EXPECT_EQ(list.SelectedItem, nullptr);
    EXPECT_EQ(second.Index(), 1);
    list.userSelects(second);
    list.ListItems.Clear();
    EXPECT_EQ(told, "+1~a~a~a?a+2~c-1a!");
    EXPECT_EQ(list.SelectedItem, nullptr);
    EXPECT_THROW(list.ListItems(1), RuntimeError);
}

}  // namespace
}  // namespace talvora::test
