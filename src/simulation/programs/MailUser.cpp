#include "simulation/programs/MailUser.h"

namespace talvora::programs {

namespace {

constexpr const char* SystemChannel = "#orrery";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace

std::vector<std::string> splitWords(std::string_view text, std::size_t most) {
    std::vector<std::string> words;
    for (std::size_t blank = 0; words.size() + 1 < most && (blank = text.find(' ')) != text.npos;) {
        words.emplace_back(text.substr(0, blank));
        text.remove_prefix(blank + 1);
    }
    words.emplace_back(text);
    words.resize(most);
    return words;
}

MailUser::MailUser(int port, std::string nick) : nick_(std::move(nick)), lines_(port) {
    lines_.filter = [this](const std::string& line) { return handle(line); };
    lines_.send("NICK " + nick_);
    lines_.send("USER " + nick_ + " 0 * :Mail user");
    lines_.send(std::string("JOIN ") + SystemChannel + " sesame");
    const Deadline deadline(Patience);
    while (!welcome_) {
        if (deadline.passed() || gone()) throw Missing(nick_ + " cannot log on:\n" + lines_.transcript);
        lines_.gather(deadline.left());
    }
}

bool MailUser::handle(const std::string& line) {
    const std::vector<std::string> words = splitWords(line, 4);
    const bool ofRobot = words[0].starts_with(":OrreryServ!");
    if (words[0] == "PING") lines_.send("PONG " + line.substr(5));
    if (words[1] == "353" && line.find("OrreryServ") != line.npos) robotIsThere_ = true;
    if (words[1] == "366") {
        welcome_ = true;
        if (robotIsThere_) begin();
    }
    if (ofRobot && (words[1] == "JOIN" || words[1] == "QUIT")) robotCame(words[1] == "JOIN");
    if (ofRobot && words[1] == "PRIVMSG" && words[2] == nick_ && words[3].starts_with(":\1")) {
        const std::vector<std::string> text =
            splitWords(std::string_view(words[3]).substr(2, words[3].size() - 3), 3);
        ++texts;
        if (text[0] == "MAIL") handleMail(text[1], text[2]);
        if (text[0] == "ANN") handleAnnouncement(text[1], text[2]);
    }
    return true;
}

void MailUser::robotCame(bool there) {
    robotIsThere_ = there;
    sending_ = false;  // the mail goes again from its first piece
    if (there) begin();
}

void MailUser::handleMail(const std::string& verb, const std::string& rest) {
    if (verb == "SENDOK" && !outgoing_.empty()) {
        const SentMail& mail = outgoing_.front();
        sending_ = true;
        sentPieces_ = 0;
        say("MAIL SEND " + mail.to + " " + std::to_string(mail.pieces.size()) + " " + mail.subject);
    }
    if (verb == "OK") sendPiece();
    if (verb == "SENTDONE") sentDone();
    if (verb == "SENDERROR" && !outgoing_.empty()) {
        ++refused;
        sending_ = false;
        say("MAIL SENDCANCEL " + outgoing_.front().to);
        begin();
    }
    if (verb == "SENDWAIAT") poll();
    if (verb == "START") start(rest);
    if (verb == "DUMP") dump(rest);
    if (verb == "DONE") done();
    if (verb == "RESUME") {
        ++resumed;
        say("MAIL OK");
    }
    if (verb == "NOTEXIST") {
        reception_ = {};
        poll();
    }
    if (verb == "NOMAIL") idle();
}

// The answer to an earlier question has come: it stands in front of what leads here.
void MailUser::begin() {
    say("ANN HAS " + std::to_string(lastNumber_));
    if (!outgoing_.empty()) {
        say("MAIL SENDREQUEST");
    } else {
        poll();
    }
}

// The number of a mail brings a blank of its own.
void MailUser::poll() {
    const std::string id = reception_.id == "0" ? "0" : " " + reception_.id;
    say("MAIL " + id + " " + std::to_string(reception_.mail.pieces.size()));
}

void MailUser::compose(const std::string& to, const std::string& subject, std::vector<std::string> pieces) {
    outgoing_.push_back({nick_, to, subject, std::move(pieces)});
}

void MailUser::sendPiece() {
    if (!sending_ || sentPieces_ == outgoing_.front().pieces.size()) return;
    const SentMail& mail = outgoing_.front();
    const std::string piece = mail.pieces[sentPieces_++];
    const bool last = sentPieces_ == mail.pieces.size();
    say((last ? "MAIL SENT " : "MAIL DUMP ") + mail.to + " " + piece);
}

void MailUser::sentDone() {
    if (!sending_) return;
    sending_ = false;
    confirmed.push_back(std::move(outgoing_.front()));
    outgoing_.pop_front();
    begin();
}

void MailUser::start(const std::string& rest) {
    const std::vector<std::string> words = splitWords(rest, 5);
    reception_ = {words[3], std::stoul(words[2]), {words[0], nick_, words[4], {}}};
    say("MAIL OK");
}

void MailUser::dump(std::string piece) {
    piece = trimmed(piece);
    if (piece.ends_with('$')) piece.pop_back();
    reception_.mail.pieces.push_back(std::move(piece));
    say("MAIL OK");
}

void MailUser::done() {
    received.push_back(std::move(reception_.mail));
    reception_ = {};
    say("MAIL OK");
    poll();
}

void MailUser::idle() {
    ++idles;
    if (!whenIdle) return;
    whenIdle(*this);
    begin();
}

void MailUser::handleAnnouncement(const std::string& verb, const std::string& rest) {
    if (verb == "ANNID") lastNumber_ = firstNumber = std::stoi(rest);
    if (verb != "ANN") return;
    const std::vector<std::string> words = splitWords(rest, 6);
    lastNumber_ = std::stoi(words[0]);
    heard.push_back({lastNumber_, words[1], words[5]});
}

}  // namespace talvora::programs
