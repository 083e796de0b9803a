#include <algorithm>
#include <random>

#include "Vocabulary.h"
#include "chat/UserList.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

using Rows = std::vector<std::string>;

// What is done to a list: + adds, - parts, x removes, r renames, m renames by the bare nick, = lists anew.
struct Act {
    char what;
    std::string nick, other;
};

// The rules as they are told, one row after the other. Each row is shown as `key=text icon {tag}`.
struct PlainList {
    struct Row {
        std::string key, shown, tag;
    };
    modNickDecode& decode;
    std::vector<Row> rows{};

    Row row(const std::string& key, std::string nick, const std::string& tag) const {
        std::string description;
        std::uint8_t icon = 0;
        decode.GetNickDesc(nick, description, icon);
        return {key, ProperCase(nick) + " (" + description + ") " + std::to_string(icon), tag};
    }
    bool act(Act act) {
        if (act.what == '=') rows.clear();
        if (act.what == '+' && act.nick.find_first_of("~+@.&") == 0) act.nick.erase(0, 1);
        const bool bare = act.what == 'm';
        const auto at = std::find_if(rows.begin(), rows.end(), [&](const Row& r) {
            return bare ? EqualText(TruncNick(r.key), TruncNick(act.nick)) : EqualText(r.key, act.nick);
        });
        const std::string entry = act.other + "|";
        if (at == rows.end()) {
            if (act.what == '+' || act.what == '=') rows.push_back(row(act.nick, act.nick, entry));
            return false;
        }
        if (act.what == '+' && InStr(at->tag, entry, Compare::Text) == 0) at->tag += entry;
        if (act.what == '-') at->tag = Replace(at->tag, entry, "");
        if (act.what == 'r' || bare) *at = row(UCase(act.other), act.other, at->tag);
        if (act.what == 'x' || at->tag.empty()) rows.erase(at);
        return bare;
    }
};

struct UserListTest : testing::Test, public VirtualMachine {
    UserListTest() {
        around.disk.put("System/perflix.lst", "DND|Do not disturb|5\r\nAFK|away|4\r\nBAD|no image|200");
        decode.LoadPerflixes();
    }
    bool act(const Act& a) {
        if (a.what == '+') list.Add(a.nick, a.other);
        if (a.what == '-') list.Part(a.nick, a.other);
        if (a.what == 'x') list.Remove(a.nick);
        if (a.what == 'r') list.Rename(a.nick, a.other);
        if (a.what == '=') list.ListNames({a.nick}, a.other);
        return a.what == 'm' && list.MatchRename(a.nick, a.other);
    }
    Rows rows() {
        Rows all;
        for (int i = 1; i <= list.ListView1.ListItems.Count(); ++i) {
            const ListItem& row = list.ListView1.ListItems(i);
            all.push_back(row.Key() + "=" + row.Text() + " " + std::to_string(row.SmallIcon()) + " {" +
                          row.Tag() + "}");
        }
        return all;
    }

    modNickDecode decode{globError, around.files};
    UserList list{around.platform, globError, decode};
};

TEST_F(UserListTest, KeepsARowAUser) {
    const std::pair<std::vector<Act>, Rows> cases[] = {
        {{{'+', "@Maria[DND]", "#a"}, {'+', "maria[dnd]", "#A"}, {'+', "~&x", "#a"}, {'+', "+", "#a"}},
         {"Maria[DND]=Maria (Do not disturb) 5 {#a|}", "&x=&X (Online) 3 {#a|}", "= (Online) 3 {#a|}"}},
        {{{'+', "x", "##a"}, {'+', "x", "#A"}, {'+', "X", "#b"}, {'-', "x", "#B"}},
         {"x=X (Online) 3 {##a|#b|}"}},
        {{{'+', "x", "##a"}, {'+', "x", "#b"}, {'-', "X", "#a"}, {'-', "z", "#b"}},
         {"x=X (Online) 3 {##b|}"}},
        {{{'+', "x y", "#a"}, {'r', "x", "z"}, {'r', "X Y", "q w[afk]"}}, {"Q W[AFK]=Q W (away) 4 {#a|}"}},
    };
    for (const auto& [acts, expected] : cases) {
        list.Clear();
        for (const Act& a : acts) act(a);
        EXPECT_EQ(rows(), expected);
    }
}

TEST_F(UserListTest, RaisesItsEventsWithTheRowsKey) {
    std::string told;
    Subscriptions on;
    on += list.Click.connect([&](const std::string& nick) {
        list.Remove(nick);  // the list may change under the event
        told += "click " + nick + ", ";
    });
    on += list.DblClick.connect([&](const std::string& nick) { told += "double " + nick + ", "; });
    on += list.MouseUp.connect([&](const std::string& nick, int button, int shift, int x, int y) {
        told += nick + std::to_string(((button * 10 + shift) * 10 + x) * 10 + y);
    });
    list.ListNames({"Maria[DND]", "Nikos"}, "#a");
    list.ListView1.userClicks(list.ListView1.ListItems(1));
    for (int turn = 0; turn < 2; ++turn) {  // at first nothing is selected
        list.ListView1.DblClick.raise();
        list.ListView1.MouseUp.raise(2, 1, 7, 0);
        list.ListView1.userSelects(list.ListView1.ListItems(1));
    }
    EXPECT_EQ(told, "click Maria[DND], double Nikos, Nikos2181");
    EXPECT_EQ(list.SelectedNick, "Maria[DND]");
}

TEST_F(UserListTest, AStateWithoutAnImageIsReportedAndTheUserStays) {
    for (int report = 0; report < 2; ++report) around.questions.willAnswer(Answer::Abort);
    list.Add("x[bad]", "#a");
    EXPECT_TRUE(list.MatchRename("X", "y[bad]"));
    EXPECT_THAT(rows(), ElementsAre("Y[BAD]=Y (no image) 0 {#a|}"));
    // The user goes while the report stands, so that there is nothing to try again.
    around.questions.willAnswer(Answer::Retry, [&] { list.Remove("z[bad]"); });
    list.Add("z[bad]", "#a");
    EXPECT_THAT(around.questions.asked,
                ElementsAre(HasSubstr("Function:Add"), HasSubstr("Function:MatchRename"),
                            HasSubstr("Number:35600\r\n")));
}

TEST_F(UserListTest, WorksBeyondTheRowsThatItCanNumber) {
    for (int n = 1; n <= 32768; ++n) list.Add("n" + std::to_string(n), "#a");
    around.questions.willAnswer(Answer::Abort);
    EXPECT_EQ(list.GetUser("n32768"), 0);
    EXPECT_THAT(around.questions.asked, ElementsAre(HasSubstr("Number:6\r\n")));
    list.Add("N32768", "#b");
    list.Remove("n1");
    EXPECT_EQ(list.GetUser("n32768"), 32767);
}

TEST_F(UserListTest, WorksOffVeryManyNamesInTurnsWithWhatComesMeanwhileBehindThem) {
    list.AtOnce = 400;
    list.ATurn = 120;
    Rows names;
    for (int n = 0; n < 1'000; ++n) names.push_back("n" + std::to_string(n));
    const ListItems& items = list.ListView1.ListItems;
    const auto meanwhile = [&] {
        for (const Act& a : {Act{'x', "n800", ""}, Act{'-', "n801", "#A"}, Act{'r', "n960", "z[dnd]"},
                             Act{'+', "n961", "#b"}, Act{'+', "late", "#b"}})
            act(a);
        list.Leave("n802", "#A");  // whatever its spelling
    };
    list.ListNames(names, "#a");
    meanwhile();
    EXPECT_EQ(items.Count(), 400);
    time.run(std::chrono::milliseconds(1));
    EXPECT_EQ(items.Count(), 400 + 120);
    time.run(std::chrono::milliseconds(10));
    ASSERT_EQ(items.Count(), 1'000 - 2 + 1);
    EXPECT_EQ(items(801).Key(), "n801");
    EXPECT_EQ(items(959).Text(), "Z (Do not disturb)");
    EXPECT_EQ(items(960).Tag(), "#a|#b|");
    EXPECT_EQ(items(999).Key(), "late");
    // Who must have an answer has it at once; a list that is cleared is empty, and stays so.
    list.ListNames(names, "#a");
    EXPECT_EQ(list.GetUser("n999"), 1'000);
    list.ListNames(names, "#a");
    list.Clear();
    time.run(std::chrono::milliseconds(50));
    EXPECT_EQ(items.Count(), 0);
}

TEST_F(UserListTest, IsBoundedWhateverAServerSays) {
    decode.ListMemory.Most = 4 << 20;
    const std::string channel = "#" + std::string(200, 'c');
    for (int n = 0; n < 100; ++n) list.Add("x", channel + std::to_string(n));
    EXPECT_LE(list.ListView1.ListItems(1).Tag().size(), UserMemory::LongestTag);
    const std::string letters(40'000, 'x');
    for (int n = 0; n < 80; ++n) list.Add(letters + std::to_string(n), "#a");
    const int rows = list.ListView1.ListItems.Count();
    EXPECT_TRUE(rows > 40 && rows < 53) << rows;
    {
        UserList other{around.platform, globError, decode};
        other.Add(letters, "#a");
        EXPECT_EQ(other.ListView1.ListItems.Count(), 0) << "all lists have one bound together";
        list.Clear();
        other.Add(letters, "#a");
        EXPECT_EQ(other.ListView1.ListItems.Count(), 1);
        other.Rename(letters, "y");
    }
    EXPECT_EQ(decode.ListMemory.used(), 0U);
}

TEST_F(UserListTest, DoesWhatAPlainListDoesWhateverComes) {
    // A view that follows the list by its notices alone.
    Rows view;
    ListItems& items = list.ListView1.ListItems;
    Subscriptions on;
    on += items.RowInserted.connect([&](int at) { view.insert(view.begin() + at - 1, items(at).Text()); });
    on += items.RowChanged.connect([&](const ListItem& row) { view.at(row.Index() - 1U) = row.Text(); });
    on += items.RowRemoved.connect([&](int at, const ListItem&) { view.erase(view.begin() + at - 1); });
    on += items.Cleared.connect([&] { view.clear(); });
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto oneOf = [&](const Rows& all) { return all[random() % all.size()]; };
    const auto nick = [&] {
        return oneOf({"n", "N"}) + std::to_string(random() % 30) + oneOf({"", "[dnd]", "[x"});
    };
    PlainList plain{decode};
    for (int step = 1; step <= 2000; ++step) {
        const char what = step % 1500 == 0 ? '=' : "++xxx-rm"[random() % 8];
        const Act a{what, nick(), what == 'r' || what == 'm' ? nick() : oneOf({"#a", "##a", "#A", "#c"})};
        ASSERT_EQ(act(a), plain.act(a));
        Rows expected;
        for (const PlainList::Row& row : plain.rows)
            expected.push_back(row.key + "=" + row.shown + " {" + row.tag + "}");
        ASSERT_EQ(rows(), expected) << step << ": " << a.what << " " << a.nick << " " << a.other;
        ASSERT_EQ(view.size(), expected.size());
        for (std::size_t n = 0; n < view.size(); ++n)
            ASSERT_THAT(expected[n], HasSubstr("=" + view[n] + " "));
    }
}

}  // namespace
}  // namespace talvora::test
