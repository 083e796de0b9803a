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

Node::Node(Nodes& owner, Node* parent, std::string key, std::string text, int image)
    : owner_(owner), parent_(parent), key_(std::move(key)), text_(std::move(text)), image_(image) {}

Node& Node::Child(int place) const {
    return at(children_, place);
}

Node* Node::FindChild(const std::string& text) const {
    const auto found = byText_.find(text);
    return found == byText_.end() ? nullptr : found->second;
}

void Node::SetImage(int image) {
    if (std::exchange(image_, image) != image) owner_.NodeChanged.raise(*this);
}

void Node::SetExpanded(bool expanded) {
    if (std::exchange(expanded_, expanded) != expanded) owner_.NodeExpanded.raise(*this);
}

Node& Nodes::Add(Node* parent, std::string key, std::string text, int image) {
    NodeComes.raise(parent);
    nodes_.emplace_back(new Node(*this, parent, std::move(key), std::move(text), image));
    Node& node = *nodes_.back();
    std::vector<Node*>& siblings = parent != nullptr ? parent->children_ : roots_;
    siblings.push_back(&node);
    node.index_ = Count();
    node.place_ = static_cast<int>(siblings.size());
    if (parent != nullptr) parent->byText_.emplace(node.text_, &node);
    NodeAdded.raise(node);
    return node;
}

void Nodes::Clear() {
    Clearing.raise();
    roots_.clear();
    nodes_.clear();
    Cleared.raise();
}

Node& Nodes::operator()(int index) const {
    if (index < 1 || index > Count()) throw RuntimeError(35600, "Index out of bounds");
    return *nodes_[static_cast<std::size_t>(index - 1)];
}

Node& Nodes::Root(int place) const {
    return at(roots_, place);
}

TreeView::TreeView() : own_(Nodes.Clearing.connect([this] { SelectedItem = nullptr; })) {}

}  // namespace talvora
