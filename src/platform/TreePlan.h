#pragma once
// What a tree is to show, put together anew by its owner: entries as values, in the order in which they are
// added. TreeView brings its nodes to it. To add or find an entry costs the same however many there are.

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Text.h"

namespace talvora {

struct PlannedNode {
    // By which the node is known again among its parent's children, also when all else of it has changed.
    std::string Name = {};
    std::string Key = {};
    std::string Text = {};
    int Image = 0;          // 0 is none
    bool Expanded = false;  // when it comes; later the user's hands decide
    const PlannedNode* Parent = nullptr;
    std::size_t Index = 0;  // counted from 0 in the order of adding
};

class TreePlan {
  public:
    // The last child of `node.Parent`, or the last root. Entries stay where they are.
    const PlannedNode& Add(PlannedNode node) {
        node.Index = entries_.size();
        const PlannedNode& entry = entries_.emplace_back(std::move(node));
        byText_.try_emplace({entry.Parent, entry.Text}, &entry);
        return entry;
    }
    // The first child of that text, without regard to case; null if there is none.
    const PlannedNode* FindChild(const PlannedNode& parent, std::string_view text) const {
        const auto found = byText_.find({&parent, text});
        return found == byText_.end() ? nullptr : found->second;
    }
    const std::deque<PlannedNode>& Entries() const { return entries_; }
    void Clear() {
        byText_.clear();
        entries_.clear();
    }

  private:
    struct Place {
        const PlannedNode* parent;
        std::string_view text;
        bool operator==(const Place& other) const {
            return parent == other.parent && EqualText(text, other.text);
        }
    };
    struct PlaceHash {
        std::size_t operator()(const Place& place) const noexcept {
            return TextHash()(place.text) ^ (std::hash<const void*>()(place.parent) * 31);
        }
    };

    std::deque<PlannedNode> entries_;
    std::unordered_map<Place, const PlannedNode*, PlaceHash> byText_;
};

}  // namespace talvora
