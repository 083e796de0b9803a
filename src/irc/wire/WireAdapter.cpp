#include "irc/wire/WireAdapter.h"

#include <algorithm>

#include "platform/CodePage1253.h"

namespace talvora {

WireAdapter::WireAdapter(const WireProfile& profile)
    : profile_(profile), incoming_(profile_, own_, names_), outgoing_(profile_, own_, names_) {}

void WireAdapter::fromServer(std::string_view bytes, std::string& toEngine) {
    if (tooLong_) return;
    if (profile_.isPlain()) return passPlain(bytes, toEngine);
    tooLong_ = !fromServer_.feed(bytes, [&](std::string_view line, bool ascii) {
        if (ascii || profile_.Encoding != Encoding::UTF8) return incoming_.line(line, toEngine);
        converted_.clear();
        appendFromUtf8(converted_, line);
        incoming_.line(converted_, toEngine);
    });
}

void WireAdapter::fromEngine(std::string_view bytes, Microseconds now, std::string& toServer,
                             std::string& toEngine) {
    if (profile_.isPlain()) {
        toServer += bytes;
        return;
    }
    fromEngine_.feed(bytes,
                     [&](std::string_view line, bool) { outgoing_.line(line, now, toServer, toEngine); });
}

WireAdapter::Overflow WireAdapter::overflow() const {
    if (tooLong_) return Overflow::LineTooLong;
    return outgoing_.overflowed() ? Overflow::TooMuchWaits : Overflow::None;
}

void WireAdapter::reset() {
    own_.reset();
    names_.reset();
    incoming_.reset();
    outgoing_.reset();
    fromServer_.reset();
    fromEngine_.reset();
    unfinished_ = 0;
    tooLong_ = false;
}

// The engine ends its lines at CR alone, so the line is measured up to that.
void WireAdapter::passPlain(std::string_view bytes, std::string& toEngine) {
    while (!bytes.empty()) {
        const auto end = std::min(bytes.find('\r'), bytes.size());
        unfinished_ += end;
        if (unfinished_ > LongestLine) {
            tooLong_ = true;
            return;
        }
        auto taken = std::min(end + 1, bytes.size());
        if (end < bytes.size()) unfinished_ = 0;
        if (taken < bytes.size() && bytes[taken] == '\n') ++taken;
        toEngine += bytes.substr(0, taken);
        bytes.remove_prefix(taken);
    }
}

}  // namespace talvora
