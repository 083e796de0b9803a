#include "orrery/face/NoticeQueue.h"

#include <algorithm>
#include <utility>

#include "common/HostGate.h"
#include "desktop/QtText.h"

namespace talvora {

namespace {

constexpr std::size_t LongestName = 80;
constexpr std::size_t LongestNotice = 400;
constexpr std::size_t LongestWindow = 512;

std::string textAt(const HostArray& data, std::size_t index, std::size_t longest) {
    const std::string* const text = index < data.size() ? data[index].asText() : nullptr;
    return text == nullptr ? std::string() : text->substr(0, longest);
}

// One line: whatever controls letters or moves the line becomes a blank.
QString shown(const std::string& text) {
    QString line = toQString(text);
    for (QChar& letter : line) {
        if (letter.category() == QChar::Other_Control || letter.category() == QChar::Other_Format)
            letter = u' ';
    }
    return line.simplified();
}

// Only what a window can be named by; a stranger's array is not kept.
HostValue windowOf(const HostArray& data) {
    if (data.size() < 4) return {};
    const HostValue& window = data[3];
    const std::string* const name = window.asText();
    if (name != nullptr) return name->size() <= LongestWindow ? window : HostValue();
    return window.asInteger() != nullptr ? window : HostValue();
}

// Notices without a window belong together if they have one title.
std::string conversationOf(std::int32_t kind, const HostValue& window, const std::string& title) {
    const std::string name = window.isNull() ? title : window.text();
    const char sort = window.isNull() ? '-' : window.asInteger() != nullptr ? '#' : '=';
    return std::to_string(kind) + sort + name;
}

QString nameOnly(NoticeKind kind, const QString& name, const QString& title) {
    if (kind == NoticeKind::PrivateText) return QStringLiteral("New message from %1").arg(name);
    if (kind == NoticeKind::ChannelText) return QStringLiteral("New text in %1").arg(name);
    return title;
}

}  // namespace

std::optional<PopUp> popUpOf(const HostValue& value, NoticePrivacy privacy) {
    const HostArray* const data = value.asArray();
    if (data == nullptr || data->size() < 3) return std::nullopt;
    const std::int32_t* const number = (*data)[2].asInteger();
    const std::int32_t kindNumber = number == nullptr ? 0 : *number;
    const bool chat = kindNumber == 1 || kindNumber == 2;
    const auto kind = chat ? static_cast<NoticeKind>(kindNumber) : NoticeKind::Other;

    PopUp popUp;
    popUp.Window = windowOf(*data);
    const std::string rawTitle = textAt(*data, 0, LongestName);
    popUp.Conversation = conversationOf(kindNumber, popUp.Window, rawTitle);
    if (privacy == NoticePrivacy::Neither) {
        popUp.Summary = QStringLiteral("New message");
        return popUp;
    }
    const QString title = shown(rawTitle);
    const std::string window = textAt(*data, 3, LongestName);
    const QString name = chat && !window.empty() ? shown(window) : title;
    if (privacy == NoticePrivacy::NameOnly) {
        popUp.Summary = nameOnly(kind, name, title);
        return popUp;
    }
    std::string text = textAt(*data, 1, LongestNotice);
    // The title says already who it is.
    if (chat && !window.empty() && text.starts_with(window + ": ")) text.erase(0, window.size() + 2);
    popUp.Summary = name;
    popUp.Body = shown(text);
    return popUp;
}

void NoticeQueue::Add(PopUp popUp) {
    const auto same = std::find_if(waiting_.begin(), waiting_.end(),
                                   [&](const PopUp& one) { return one.Conversation == popUp.Conversation; });
    if (same != waiting_.end()) {
        *same = std::move(popUp);
        return;
    }
    if (waiting_.size() == MostWaiting) waiting_.pop_front();
    waiting_.push_back(std::move(popUp));
}

std::optional<PopUp> NoticeQueue::Next(std::int64_t now) {
    if (Wait(now) != 0) return std::nullopt;
    times_[oldest_] = now;
    oldest_ = (oldest_ + 1) % times_.size();
    PopUp next = std::move(waiting_.front());
    waiting_.pop_front();
    return next;
}

std::optional<std::int64_t> NoticeQueue::Wait(std::int64_t now) const {
    if (waiting_.empty()) return std::nullopt;
    return std::max<std::int64_t>(times_[oldest_] + Span - now, 0);
}

std::uint32_t NoticeQueue::NumberOf(const std::string& conversation) const {
    for (const Standing& one : shown_) {
        if (one.conversation == conversation) return one.number;
    }
    return 0;
}

void NoticeQueue::Shown(const PopUp& popUp, std::uint32_t number) {
    shown_.remove_if(
        [&](const Standing& one) { return one.conversation == popUp.Conversation || one.number == number; });
    if (number == 0) return;
    if (shown_.size() == MostShown) shown_.pop_back();
    shown_.push_front({popUp.Conversation, popUp.Window, number});
}

const HostValue* NoticeQueue::WindowOf(std::uint32_t number) const {
    for (const Standing& one : shown_) {
        if (one.number == number) return &one.window;
    }
    return nullptr;
}

void NoticeQueue::Forget(std::uint32_t number) {
    shown_.remove_if([&](const Standing& one) { return one.number == number; });
}

}  // namespace talvora
