#include "platform_qt/HeadlessQuestions.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <functional>

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

constexpr std::size_t MostTold = 8;
constexpr std::size_t LongestText = 8192;  // of one report; a stranger's line may be in it
constexpr std::size_t LongestGist = 160;
constexpr int MinuteMs = 60'000;

// Without carriage returns, and without anything that a terminal obeys.
std::string harmless(std::string_view text) {
    std::string clean;
    for (const char c : text.substr(0, LongestText)) {
        const char16_t letter = codePointOf(static_cast<unsigned char>(c));
        if (c == '\r') continue;
        const bool control = (letter < 0x20 && c != '\n') || (letter >= 0x7F && letter < 0xA0);
        clean += control ? '?' : c;
    }
    return clean;
}

// A fault's reports differ in their description, not in their first line.
std::string gistOf(const std::string& text) {
    const std::size_t description = text.find("Description: ");
    const std::size_t begin = description == std::string::npos ? 0 : description;
    return text.substr(begin, std::min(text.find('\n', begin) - begin, LongestGist));
}

const char* nameOf(Answer answer) {
    switch (answer) {
        case Answer::Ok:
            return "OK";
        case Answer::Abort:
            return "Abort";
        case Answer::Retry:
            return "Retry";
        case Answer::Ignore:
            return "Ignore";
        case Answer::Yes:
            return "Yes";
        case Answer::No:
            return "No";
        case Answer::Cancel:
            break;
    }
    return "Cancel";
}

}  // namespace

HeadlessQuestions::HeadlessQuestions(Loop& loop, Answer onFault, int output)
    : loop_(loop), onFault_(onFault == Answer::Ignore ? Answer::Ignore : Answer::Abort), output_(output) {}

Answer HeadlessQuestions::answer(Buttons choices) const {
    switch (choices) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return onFault_;
        case Buttons::YesNo:
            return Answer::No;
        case Buttons::OkCancel:
        case Buttons::YesNoCancel:
        case Buttons::RetryCancel:
            break;
    }
    return Answer::Cancel;
}

Answer HeadlessQuestions::Ask(MessageBox& box) {
    const Answer given = answer(box.Choices);
    tell(box.Title, box.Text, nameOf(given));
    return given;
}

std::optional<std::string> HeadlessQuestions::Ask(const InputBox& box) {
    tell(box.Title, box.Prompt, nameOf(Answer::Cancel));
    return std::nullopt;
}

std::vector<std::string> HeadlessQuestions::Ask(const OpenFileBox& box) {
    tell(box.Title, "Which file is to be opened?", nameOf(Answer::Cancel));
    return {};
}

std::optional<std::string> HeadlessQuestions::Ask(const SaveFileBox& box) {
    tell(box.Title, "Under which name is it to be kept?", nameOf(Answer::Cancel));
    return std::nullopt;
}

std::optional<FontChoice> HeadlessQuestions::Ask(const FontBox& box) {
    tell(box.Title, "Which font?", nameOf(Answer::Cancel));
    return std::nullopt;
}

void HeadlessQuestions::tell(const std::string& title, const std::string& text, const std::string& outcome) {
    const std::size_t hash = std::hash<std::string>{}(title + '\n' + text);
    const auto known =
        std::find_if(told_.begin(), told_.end(), [hash](const Told& one) { return one.hash == hash; });
    if (known != told_.end()) {
        if (known->more < INT_MAX) ++known->more;
        counted_ = true;
        if (!minute_.armed()) minute_.arm(loop_, MinuteMs);
        return;
    }
    printCounts();
    const std::string body = harmless(text);
    remember(hash, body);
    print(toUtf8(harmless(title) + "\n" + body + "\n[" + outcome + "]\n"));
}

void HeadlessQuestions::remember(std::size_t hash, const std::string& text) {
    if (told_.size() == MostTold) told_.erase(told_.begin());
    told_.push_back({hash, gistOf(text), 0});
}

void HeadlessQuestions::printCounts() {
    if (!std::exchange(counted_, false)) return;
    for (Told& one : told_) {
        if (one.more == 0) continue;
        print(toUtf8("... and " + std::to_string(one.more) + " more like this: " + one.gist + "\n"));
        one.more = 0;
    }
}

void HeadlessQuestions::everyMinute() {
    if (!counted_) minute_.disarm();
    printCounts();
}

// A pipe that has room for a piece of this size takes it without waiting.
void HeadlessQuestions::print(std::string_view text) const {
    while (!text.empty()) {
        pollfd ready{output_, POLLOUT, 0};
        if (::poll(&ready, 1, 0) != 1 || (ready.revents & POLLOUT) == 0) return;
        const ssize_t written = ::write(output_, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace talvora
