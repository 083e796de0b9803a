#pragma once
// The model of a tree: nodes with a text, perhaps a key, and a picture. Its owner plans it anew whenever its
// source has changed; the tree compares and tells its view only what differs, so nothing flickers, and what
// is selected or folded stays so as long as it is there. A refresh costs in proportion to the plan.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/Property.h"
#include "platform/TreePlan.h"

namespace talvora {

class Nodes;

// Lives in its tree for as long as the plans name it.
class Node {
  public:
    const std::string& Name() const { return name_; }  // among its parent's children; no state is part of it
    const std::string& Key() const { return key_; }    // for the owner; nodes may share one
    const std::string& Text() const { return text_; }
    int Image() const { return image_; }  // 0 is none
    bool Expanded() const { return expanded_; }
    int Index() const { return index_; }      // in the tree, counted from 1 in the order of the plan
    Node* Parent() const { return parent_; }  // null for a root
    int Children() const { return static_cast<int>(children_.size()); }
    // Counted from 1; the node's own place among its parent's children, or the roots, is `Place`, and 0 once
    // it has gone.
    Node& Child(int place) const;
    int Place() const { return place_; }
    // How many nodes with a key stand below it, at whatever depth.
    int KeysBelow() const { return keysBelow_; }

    void SetExpanded(bool expanded);

  private:
    friend class Nodes;
    Node(Nodes& owner, Node* parent, const PlannedNode& plan);
    bool isPlanned(const PlannedNode& plan) const;

    Nodes& owner_;
    Node* parent_;
    std::string name_;
    std::string key_;
    std::string text_;
    int image_ = 0;
    int index_ = 0;
    int place_ = 0;
    int keysBelow_ = 0;
    bool expanded_;
    std::vector<Node*> children_;
};

class Nodes {
  public:
    Nodes() = default;
    Nodes(const Nodes&) = delete;
    Nodes& operator=(const Nodes&) = delete;

    // Makes the tree what is planned. A node of the same name, with a key or without as before, under the
    // same parent is the same node.
    void Refresh(const TreePlan& plan);
    int Count() const { return static_cast<int>(nodes_.size()); }
    // Faults with 35600 if there is no such node.
    Node& operator()(int index) const;

    int Roots() const { return static_cast<int>(roots_.size()); }
    Node& Root(int place) const;

    // Nodes are about to come, go or move, and have done so; those that have gone still live until all
    // handlers have returned.
    Event<> Arranging;
    Event<> Arranged;
    Event<const Node&> NodeChanged;
    Event<Node&> NodeExpanded;  // or folded

  private:
    friend class Node;
    class Known;

    bool isArrangedAs(const TreePlan& plan) const;
    void arrange(const TreePlan& plan);
    void append(std::unique_ptr<Node> node);
    void countKeys();

    std::vector<std::unique_ptr<Node>> nodes_;  // in the order of the plan
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
