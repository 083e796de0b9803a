#include "chat/UserTree.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {
namespace {

constexpr std::string_view KeySeparator = ":..:";
constexpr std::string_view RegisteredMark = "UL:";
// Beside its texts, of a node and its entry in the plan.
constexpr std::size_t NodeCost = 384;

}  // namespace

UserTree::UserTree(GlobError& globError, modNickDecode& nickDecode)
    : globError_(globError), nickDecode_(nickDecode) {
    on_ += TreeView1.NodeClick.connect([this](const Node& node) {
        if (node.Key().empty()) return;
        const Key key = keyOf(node.Key());
        ClickUser.raise(key.nick, key.path, key.ip);
    });
    on_ += TreeView1.DblClick.connect([this] {
        if (const Node* node = selectedUser()) {
            const Key key = keyOf(node->Key());
            DblClickUser.raise(key.nick, key.path, key.ip);
        }
    });
    on_ += TreeView1.MouseUp.connect([this](int button, int shift, int x, int y) {
        if (const Node* node = selectedUser()) {
            const Key key = keyOf(node->Key());
            MouseUp.raise(key.nick, key.path, key.ip, button, shift, x + 1, y + 1);
        }
    });
    Clear();
    Refresh();
}

UserTree::~UserTree() {
    nickDecode_.ListMemory.give(planned_ + shown_);
}

const Node* UserTree::selectedUser() const {
    const Node* node = TreeView1.SelectedItem;
    return node != nullptr && !node->Key().empty() ? node : nullptr;
}

// The user's own texts may hold the separator, but no nick does: it is what stands last.
UserTree::Key UserTree::keyOf(Text text) {
    const std::size_t width = KeySeparator.size();
    const std::size_t first = text.find(KeySeparator);
    const std::size_t last = text.rfind(KeySeparator);
    return {text.substr(last + width), text.substr(0, first),
            first == last ? std::string() : text.substr(first + width, last - first - width)};
}

// ---- The rules

void UserTree::Clear() {
    trapped(globError_, "Clear", [&](Trap&) {
        nickDecode_.ListMemory.give(std::exchange(planned_, 0));
        OnlineCount = 0;
        plan();
    });
}

// The roots are there at any time: a reply may be overtaken by another one behind a report.
void UserTree::plan() {
    plan_.Clear();
    for (const char* root : {Registered, Unknown})
        plan_.Add({.Name = root, .Text = root, .Image = GroupImage, .Expanded = true});
}

void UserTree::AddUser(Text RealName, Text Host, Text Nick) {
    trapped(globError_, "AddUser", [&](Trap&) {
        User user{.bareNick = Nick};
        std::uint8_t icon = 0;
        nickDecode_.GetNickDesc(user.bareNick, user.description, icon);
        user.icon = icon;
        std::string_view place = RealName;
        const bool marked = place.starts_with(RegisteredMark);
        if (marked) place.remove_prefix(RegisteredMark.size());
        const bool registered = marked && place.find_first_of(".@") != std::string_view::npos;
        user.path = user.bareNick;
        if (registered) user.path.insert(0, std::string(place.substr(0, place.find('@'))) + ".");
        user.key.append(user.path).append(KeySeparator).append(Host).append(KeySeparator).append(Nick);
        UserAddEx(plan_.Entries()[registered ? 0 : 1], user);
        if (icon == modNickDecode::OnlineIcon) ++OnlineCount;
    });
}

// A user whose bare name is that of a node without a description at his place is that node, and is not added.
void UserTree::UserAddEx(const PlannedNode& root, const User& user) {
    splitInto(pieces_, user.path, ".");
    if (pieces_.empty()) pieces_.emplace_back();  // of a nick that is nothing but a state
    const std::string last(pieces_.back());
    pieces_.pop_back();
    if (pieces_.size() > MostGroups) pieces_.resize(MostGroups);
    const PlannedNode* parent = &root;
    for (const std::string_view piece : pieces_) {
        const PlannedNode* group = plan_.FindChild(*parent, piece);
        if (group == nullptr) {
            const std::string text(piece);
            group = add(parent, {.Name = text, .Text = text, .Image = GroupImage, .Expanded = true});
        }
        if (group == nullptr) return;
        parent = group;
    }
    if (plan_.FindChild(*parent, last) != nullptr) return;
    std::string text = user.description.empty() ? last : last + " (" + user.description + ")";
    add(parent, {.Name = last, .Key = user.key, .Text = std::move(text), .Image = user.icon});
}

// Null if there is no room.
const PlannedNode* UserTree::add(const PlannedNode* parent, PlannedNode node) {
    const std::size_t cost = NodeCost + node.Name.size() + node.Key.size() + node.Text.size();
    if (!nickDecode_.ListMemory.take(cost)) return nullptr;
    planned_ += cost;
    node.Parent = parent;
    return &plan_.Add(std::move(node));
}

void UserTree::Refresh() {
    trapped(globError_, "Refresh", [&](Trap&) {
        TreeView1.Nodes.Refresh(plan_);
        plan();
        nickDecode_.ListMemory.give(std::exchange(shown_, std::exchange(planned_, 0)));
    });
}

}  // namespace talvora
