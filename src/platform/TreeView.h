#pragma once
// The model of a tree: nodes with a text, perhaps a key, and a picture. It tells its view which nodes came or
// changed. A node costs the same to add or find however many there are.

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Property.h"
#include "platform/Text.h"

namespace talvora {

class Nodes;

// Lives in its tree until the tree is cleared.
class Node {
  public:
    const std::string& Key() const { return key_; }  // for the owner; nodes may share one
    const std::string& Text() const { return text_; }
    int Image() const { return image_; }  // 0 is none
    bool Expanded() const { return expanded_; }
    int Index() const { return index_; }      // in the tree, counted from 1 in the order of adding
    Node* Parent() const { return parent_; }  // null for a root
    int Children() const { return static_cast<int>(children_.size()); }
    // Counted from 1; the node's own place among its parent's children, or the roots, is `Place`.
    Node& Child(int place) const;
    int Place() const { return place_; }
    // The first child of that text, without regard to case; null if there is none.
    Node* FindChild(const std::string& text) const;

    void SetImage(int image);
    void SetExpanded(bool expanded);

  private:
    friend class Nodes;
    Node(Nodes& owner, Node* parent, std::string key, std::string text, int image);

    Nodes& owner_;
    Node* parent_;
    std::string key_;
    std::string text_;
    int image_;
    int index_ = 0;
    int place_ = 0;
    bool expanded_ = false;
    std::vector<Node*> children_;
    std::unordered_map<std::string, Node*, TextHash, TextEqual> byText_;
};

class Nodes {
  public:
    Nodes() = default;
    Nodes(const Nodes&) = delete;
    Nodes& operator=(const Nodes&) = delete;

    // The last child of `parent`, or the last root without one.
    Node& Add(Node* parent, std::string key, std::string text, int image = 0);
    void Clear();
    int Count() const { return static_cast<int>(nodes_.size()); }
    // Faults with 35600 if there is no such node.
    Node& operator()(int index) const;

    int Roots() const { return static_cast<int>(roots_.size()); }
    Node& Root(int place) const;

    // A node is about to come as the last child of its parent (null: as the last root), and has come.
    Event<Node*> NodeComes;
    Event<Node&> NodeAdded;
    Event<const Node&> NodeChanged;
    Event<Node&> NodeExpanded;  // or folded
    // All nodes are about to go, and have gone.
    Event<> Clearing;
    Event<> Cleared;

  private:
    friend class Node;

    std::vector<std::unique_ptr<Node>> nodes_;
    std::vector<Node*> roots_;
};

class TreeView {
  public:
    TreeView();

    talvora::Nodes Nodes;
    Node* SelectedItem = nullptr;  // null while no node is selected

    Event<Node&> NodeClick;
    Event<> DblClick;  // on the selected node
    // As a ListView's.
    Event<int, int, int, int> MouseUp;

    // What the user's hands do.
    void userClicks(Node& node) {
        SelectedItem = &node;
        NodeClick.raise(node);
    }

  private:
    Subscription own_;
};

}  // namespace talvora
