// A list and its model for the toolkit's views, held against each other over random changes.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <algorithm>
#include <random>

#include "desktop/ListModel.h"
#include "desktop/QtText.h"

namespace talvora::test {
namespace {

std::vector<std::string> shown(const ListModel& model) {
    std::vector<std::string> texts;
    for (int i = 0; i < model.rowCount(); ++i) {
        texts.push_back(fromQString(model.index(i, 0).data().toString()));
    }
    return texts;
}

std::vector<std::string> expected(const ListView& list, ListModel::Order order) {
    std::vector<std::string> texts;
    for (int i = 1; i <= list.ListItems.Count(); ++i) texts.push_back(list.ListItems(i).Text());
    if (order == ListModel::Order::ByName) std::sort(texts.begin(), texts.end());
    return texts;
}

class ListModelTest : public testing::TestWithParam<ListModel::Order> {};

TEST_P(ListModelTest, FollowsItsListThroughRandomChanges) {
    ListView list;
    for (const char* name : {"m", "c"}) list.ListItems.Add(name, name);
    ListModel::Look look;
    look.Columns = {QStringLiteral("Name"), QStringLiteral("More")};
    look.Sorting = GetParam();
    ListModel model(list, look);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::mt19937 random(7);
    const auto below = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    for (int step = 0; step < 3000; ++step) {
        const std::string name(1 + static_cast<std::size_t>(below(2)), static_cast<char>('a' + below(26)));
        const int count = list.ListItems.Count();
        const int kind = below(step % 1000 == 999 ? 1 : 10);
        if (kind == 0 && step % 1000 == 999) {
            list.ListItems.Clear();
        } else if (kind < 5 || count == 0) {
            list.ListItems.Add(name, name);
        } else if (kind < 8) {
            list.ListItems.Remove(list.ListItems(1 + below(count)));
        } else if (kind == 8) {
            list.ListItems(1 + below(count)).SetText(name);
        } else {
            list.ListItems(1 + below(count)).SetSubItem(1, name);
        }
        if (step % 64 != 0) continue;  // very many rows are shown together
        model.settle();
        ASSERT_EQ(shown(model), expected(list, GetParam())) << "step " << step;
    }
    list.SortOrder = SortOrder::Descending;
    list.SortOrder = SortOrder::Ascending;
    ASSERT_EQ(shown(model), expected(list, GetParam()));
    for (int i = 0; i < model.rowCount(); ++i)
        EXPECT_EQ(model.indexOf(*model.item(model.index(i, 0))).row(), i);
}

INSTANTIATE_TEST_SUITE_P(In, ListModelTest,
                         testing::Values(ListModel::Order::AsListed, ListModel::Order::ByName));

TEST(ListModel, TicksByHandAndKeepsToOneLine) {
    ListView list;
    list.ListItems.Add("", "#a\r\nb");
    ListModel::Look look;
    look.Columns = {QStringLiteral("Name")};
    look.Checkable = true;
    ListModel model(list, look);
    int ticks = 0;
    const auto on = list.ItemCheck.connect([&](ListItem&) { ++ticks; });
    EXPECT_EQ(model.index(0, 0).data().toString(), "#a  b");
    EXPECT_TRUE(model.setData(model.index(0, 0), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(list.ListItems(1).Checked());
    EXPECT_EQ(ticks, 1);
    list.ListItems(1).SetChecked(false);
    EXPECT_EQ(model.index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace talvora::test
