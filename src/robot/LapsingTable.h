#pragma once
// What the robot remembers of users for a while: one value a user, which lapses when nothing has touched it
// for the time that the owner says. Each operation costs the same however many there are.

#include <list>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/Loop.h"

namespace talvora {

template <class Value>
class LapsingTable {
  public:
    Value* Find(const std::string& key) {
        const auto found = byKey_.find(key);
        return found == byKey_.end() ? nullptr : &found->second->value;
    }
    // Replaces what is there.
    Value& Put(const std::string& key, Value value, Microseconds now) {
        Erase(key);
        order_.push_back({key, now, std::move(value)});
        byKey_[key] = std::prev(order_.end());
        return order_.back().value;
    }
    void Touch(const std::string& key, Microseconds now) {
        const auto found = byKey_.find(key);
        if (found == byKey_.end()) return;
        found->second->touched = now;
        order_.splice(order_.end(), order_, found->second);
    }
    bool Erase(const std::string& key) {
        const auto found = byKey_.find(key);
        if (found == byKey_.end()) return false;
        order_.erase(found->second);
        byKey_.erase(found);
        return true;
    }
    void Lapse(Microseconds touchedBefore) {
        while (!order_.empty() && order_.front().touched < touchedBefore)
            Erase(std::string(order_.front().key));
    }
    void Clear() {
        byKey_.clear();
        order_.clear();
    }
    std::size_t Size() const { return byKey_.size(); }

  private:
    struct Entry {
        std::string key;
        Microseconds touched;
        Value value;
    };
    std::list<Entry> order_;  // that which was not touched for longest first
    std::unordered_map<std::string, typename std::list<Entry>::iterator> byKey_;
};

}  // namespace talvora
