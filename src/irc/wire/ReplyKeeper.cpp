#include "irc/wire/ReplyKeeper.h"

#include <utility>

#include "irc/wire/LineView.h"

namespace talvora {

namespace {

constexpr std::size_t LongestKey = 200;
constexpr std::size_t SpareRoom = std::size_t{64} * 1024;

std::string_view shortened(std::string_view key) {
    return key.substr(0, LongestKey);
}

}  // namespace

void ReplyKeeper::keep(Kind kind, std::string_view key, std::string_view line, std::string& out) {
    auto index = find(kind, key);
    if (index == replies_.size()) index = begin(kind, key);
    Reply& reply = replies_[index];
    std::string& place = reply.through ? out : reply.lines;
    place += line;
    place += "\r\n";
    if (reply.through) return;
    bytes_ += line.size() + 2;
    if (bytes_ > MostBytes) letAllThrough(out);
}

bool ReplyKeeper::release(Kind kind, std::string_view key, std::string& out) {
    const auto index = find(kind, key);
    if (index == replies_.size()) return false;
    letOut(index, out);
    forget(index);
    return true;
}

bool ReplyKeeper::releaseAll(Kind kind, std::string& out) {
    bool any = false;
    for (std::size_t i = 0; i < replies_.size();) {
        if (replies_[i].kind != kind) {
            ++i;
            continue;
        }
        letOut(i, out);
        forget(i);
        any = true;
    }
    return any;
}

bool ReplyKeeper::underWay(Kind kind, std::string_view key) const {
    return find(kind, key) < replies_.size();
}

bool ReplyKeeper::underWay(Kind kind) const {
    for (const auto& reply : replies_) {
        if (reply.kind == kind) return true;
    }
    return false;
}

void ReplyKeeper::drop() {
    replies_.clear();
    bytes_ = 0;
}

std::size_t ReplyKeeper::find(Kind kind, std::string_view key) const {
    key = shortened(key);
    std::size_t i = 0;
    while (i < replies_.size() && (replies_[i].kind != kind || !sameAscii(replies_[i].key, key))) ++i;
    return i;
}

std::size_t ReplyKeeper::begin(Kind kind, std::string_view key) {
    if (replies_.size() == MostReplies) forget(0);
    replies_.push_back({kind, false, std::string(shortened(key)), std::move(spare_)});
    spare_.clear();
    return replies_.size() - 1;
}

void ReplyKeeper::letOut(std::size_t index, std::string& out) {
    std::string& lines = replies_[index].lines;
    out += lines;
    bytes_ -= lines.size();
    lines.clear();
}

void ReplyKeeper::forget(std::size_t index) {
    Reply& reply = replies_[index];
    bytes_ -= reply.lines.size();
    if (reply.lines.capacity() <= SpareRoom) {
        spare_ = std::move(reply.lines);
        spare_.clear();
    }
    replies_.erase(replies_.begin() + static_cast<std::ptrdiff_t>(index));
}

void ReplyKeeper::letAllThrough(std::string& out) {
    for (std::size_t i = 0; i < replies_.size(); ++i) {
        letOut(i, out);
        replies_[i].lines.shrink_to_fit();
        replies_[i].through = true;
    }
}

}  // namespace talvora
