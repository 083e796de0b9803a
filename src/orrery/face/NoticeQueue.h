#pragma once
// Which notice is shown when: at most three a second, the rest waits in its order, and of one conversation
// only the newest. Also remembers under which number the screen shows a conversation, so that a newer notice
// takes the older one's place. Everything in it is bounded. Knows no clock: times are milliseconds that the
// caller gives, never going back.

#include <QString>
#include <array>
#include <cstdint>
#include <list>
#include <optional>
#include <string>

#include "common/HostMessages.h"

namespace talvora {

// How much of a notice others may see who look at the screen.
enum class NoticePrivacy { NameAndText, NameOnly, Neither };

struct PopUp {
    std::string Conversation;  // the same for all notices of one
    HostValue Window;          // what opens its window
    QString Summary;
    QString Body;
};

// What a message 9 says; nothing if it is none. Texts are cut to what a notice can show.
std::optional<PopUp> popUpOf(const HostValue& data, NoticePrivacy privacy);

class NoticeQueue {
  public:
    static constexpr std::size_t MostWaiting = 64;
    static constexpr std::size_t MostShown = 128;
    static constexpr std::int64_t Span = 1000;

    // When there is no room, what waits longest is given up.
    void Add(PopUp popUp);
    // The next one, if one waits and may be shown now; it counts as shown.
    std::optional<PopUp> Next(std::int64_t now);
    // How long `Next` has nothing; none if nothing waits.
    std::optional<std::int64_t> Wait(std::int64_t now) const;
    void Clear() { waiting_.clear(); }

    // The number under which the screen shows a conversation, 0 for none.
    std::uint32_t NumberOf(const std::string& conversation) const;
    void Shown(const PopUp& popUp, std::uint32_t number);
    // What stands under the number on the screen; null if nothing of ours does.
    const HostValue* WindowOf(std::uint32_t number) const;
    void Forget(std::uint32_t number);
    void ForgetAll() { shown_.clear(); }

  private:
    struct Standing {
        std::string conversation;
        HostValue window;
        std::uint32_t number;
    };

    std::list<PopUp> waiting_;
    std::list<Standing> shown_;                               // the latest first
    std::array<std::int64_t, 3> times_{-Span, -Span, -Span};  // of the last three, the oldest at `oldest_`
    std::size_t oldest_ = 0;
};

}  // namespace talvora
