#include "platform/TreeView.h"

#include <utility>

#include "platform/RuntimeError.h"

namespace talvora {
namespace {

Node& at(const std::vector<Node*>& nodes, int place) {
    if (place < 1 || std::cmp_greater(place, nodes.size())) throw RuntimeError(35600, "Index out of bounds");
    return *nodes[static_cast<std::size_t>(place - 1)];
}

}  // namespace

Node::Node(Nodes& owner, Node* parent, const PlannedNode& plan)
    : owner_(owner), parent_(parent), name_(plan.Name), expanded_(plan.Expanded) {}

Node& Node::Child(int place) const {
    return at(children_, place);
}

void Node::SetExpanded(bool expanded) {
    if (std::exchange(expanded_, expanded) != expanded) owner_.NodeExpanded.raise(*this);
}

bool Node::isPlanned(const PlannedNode& plan) const {
    return key_.empty() == plan.Key.empty() && EqualText(name_, plan.Name);
}

// ---- A refresh

// The nodes that there are, to be found by parent and name; each is found once.
class Nodes::Known {
  public:
    explicit Known(std::vector<std::unique_ptr<Node>> nodes) : nodes_(std::move(nodes)) {
        places_.reserve(nodes_.size());
        for (auto& node : nodes_)
            places_.emplace(Place{node->parent_, node->name_, node->key_.empty()}, &node);
        for (auto& node : nodes_) node->place_ = 0;
    }

    // Nothing if there is none.
    std::unique_ptr<Node> take(const Node* parent, const PlannedNode& plan) {
        const auto found = places_.find(Place{parent, plan.Name, plan.Key.empty()});
        if (found == places_.end()) return nullptr;
        std::unique_ptr<Node> node = std::move(*found->second);
        places_.erase(found);
        return node;
    }

  private:
    struct Place {
        const Node* parent;
        std::string_view name;
        bool keyless;
        bool operator==(const Place& other) const {
            return parent == other.parent && keyless == other.keyless && EqualText(name, other.name);
        }
    };
    struct PlaceHash {
        std::size_t operator()(const Place& place) const noexcept {
            return TextHash()(place.name) ^ (std::hash<const void*>()(place.parent) * 31 + place.keyless);
        }
    };

    std::vector<std::unique_ptr<Node>> nodes_;
    std::unordered_multimap<Place, std::unique_ptr<Node>*, PlaceHash> places_;
};

void Nodes::Refresh(const TreePlan& plan) {
    if (!isArrangedAs(plan)) arrange(plan);
    auto entry = plan.Entries().begin();
    for (const auto& node : nodes_) {
        const PlannedNode& planned = *entry++;
        node->key_ = planned.Key;
        if (node->text_ == planned.Text && node->image_ == planned.Image) continue;
        node->text_ = planned.Text;
        node->image_ = planned.Image;
        NodeChanged.raise(*node);
    }
}

bool Nodes::isArrangedAs(const TreePlan& plan) const {
    if (plan.Entries().size() != nodes_.size()) return false;
    auto entry = plan.Entries().begin();
    for (const auto& node : nodes_) {
        const PlannedNode& planned = *entry++;
        const int parent = planned.Parent == nullptr ? 0 : static_cast<int>(planned.Parent->Index) + 1;
        if ((node->parent_ == nullptr ? 0 : node->parent_->index_) != parent) return false;
        if (!node->isPlanned(planned)) return false;
    }
    return true;
}

void Nodes::arrange(const TreePlan& plan) {
    Arranging.raise();
    Known known(std::exchange(nodes_, {}));
    roots_.clear();
    nodes_.reserve(plan.Entries().size());
    for (const PlannedNode& planned : plan.Entries()) {
        Node* parent = planned.Parent == nullptr ? nullptr : nodes_[planned.Parent->Index].get();
        std::unique_ptr<Node> node = known.take(parent, planned);
        if (node == nullptr) {
            node.reset(new Node(*this, parent, planned));
            node->key_ = planned.Key;
            node->text_ = planned.Text;
            node->image_ = planned.Image;
        }
        append(std::move(node));
    }
    countKeys();
    Arranged.raise();
}

// Children stand behind their parents.
void Nodes::countKeys() {
    for (const auto& node : nodes_) node->keysBelow_ = 0;
    for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
        Node* parent = (*node)->parent_;
        if (parent != nullptr) parent->keysBelow_ += (*node)->keysBelow_ + ((*node)->key_.empty() ? 0 : 1);
    }
}

void Nodes::append(std::unique_ptr<Node> node) {
    std::vector<Node*>& siblings = node->parent_ != nullptr ? node->parent_->children_ : roots_;
    node->children_.clear();
    siblings.push_back(node.get());
    node->place_ = static_cast<int>(siblings.size());
    nodes_.push_back(std::move(node));
    nodes_.back()->index_ = Count();
}

Node& Nodes::operator()(int index) const {
    if (index < 1 || index > Count()) throw RuntimeError(35600, "Index out of bounds");
    return *nodes_[static_cast<std::size_t>(index - 1)];
}

Node& Nodes::Root(int place) const {
    return at(roots_, place);
}

TreeView::TreeView()
    : own_(Nodes.Arranged.connect([this] {
          if (SelectedItem != nullptr && SelectedItem->Place() == 0) SelectedItem = nullptr;
      })) {}

}  // namespace talvora
