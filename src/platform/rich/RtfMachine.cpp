#include "platform/rich/RtfMachine.h"

#include <algorithm>

#include "platform/CodePage1253.h"
#include "platform/rich/CodePages.h"
#include "platform/rich/PictureStore.h"

namespace talvora {
namespace {

constexpr std::size_t MaxDepth = 256;

bool isControl(char32_t code) {
    return (code < ' ' && code != '\t') || code == 0x7F;
}

bool isHighSurrogate(char32_t code) {
    return code >= 0xD800 && code < 0xDC00;
}

bool isLowSurrogate(char32_t code) {
    return code >= 0xDC00 && code < 0xE000;
}

}  // namespace

void RtfMachine::Read(std::string_view input, std::deque<Paragraph>& paragraphs) {
    scanner_ = RtfScanner(input);
    paragraphs_ = &paragraphs;
    open_ = &paragraphs.back();
    state_ = base_;
    ended_ = 0;
    endOfCharacter();
    pictures_.BeginReading();
    run();
    if (!fragments_) noteEnd();
    closeAll();
}

void RtfMachine::run() {
    bool opened = false;
    bool starred = false;
    for (;;) {
        switch (scanner_.Next()) {
            case RtfToken::End:
                return;
            case RtfToken::Text:
                text(scanner_.Text());
                break;
            case RtfToken::Open:
                open();
                opened = true;
                starred = false;
                continue;
            case RtfToken::Close:
                close();
                break;
            case RtfToken::Word:
                if (opened)
                    start(findRtfWord(scanner_.Text(), scanner_.Hash()), starred);
                else
                    apply(findRtfWord(scanner_.Text(), scanner_.Hash()));
                break;
            case RtfToken::Symbol:
                if (opened && scanner_.Byte() == '*') {
                    starred = true;
                    continue;
                }
                symbol(scanner_.Byte());
                break;
            case RtfToken::Hex:
                hex(scanner_.Byte());
                break;
            case RtfToken::Binary:
                binary(scanner_.Text());
                break;
        }
        opened = false;
    }
}

// ---- Groups

void RtfMachine::open() {
    endOfCharacter();
    if (stack_.size() < MaxDepth)
        stack_.push_back(state_);
    else
        ++flattened_;
}

void RtfMachine::close() {
    endOfCharacter();
    if (flattened_ != 0) {
        if (flattened_ == skippedFrom_) {
            state_.Destination = RtfDestination::Body;
            skippedFrom_ = 0;
        }
        --flattened_;
        return;
    }
    if (stack_.empty()) return;
    const RtfDestination left = state_.Destination;
    if (stack_.size() == 1 && !fragments_ && left == RtfDestination::Body) noteEnd();
    state_ = stack_.back();
    stack_.pop_back();
    closed_ = stack_.empty();
    if (state_.Destination == left) return;
    if (left == RtfDestination::Picture) finishPicture();
    if (left == RtfDestination::Fonts) selectFont(defaultFont_);
}

void RtfMachine::closeAll() {
    while (!stack_.empty()) close();
}

// The first word of a group. A group of an unknown kind may be shown, unless it says that it needs knowing.
void RtfMachine::start(const RtfWord& word, bool starred) {
    if (word.Kind == RtfKind::Destination)
        enter(static_cast<RtfDestination>(word.What));
    else if (starred)
        enter(RtfDestination::Skipped);
    else
        apply(word);
}

void RtfMachine::enter(RtfDestination destination) {
    endOfCharacter();
    if (destination == RtfDestination::Body || state_.Destination == RtfDestination::Skipped) return;
    const bool table = destination == RtfDestination::Fonts || destination == RtfDestination::Colors;
    if (state_.Destination != RtfDestination::Body || flattened_ != 0 || (table && fragments_))
        destination = RtfDestination::Skipped;
    if (flattened_ != 0) {
        // Only text can be resumed there: in the destinations that hold none, nothing starts a group.
        if (state_.Destination != RtfDestination::Body) return;
        skippedFrom_ = flattened_;
    }
    state_.Destination = destination;
    if (table && destination != RtfDestination::Skipped) startTable(destination);
    if (destination == RtfDestination::Picture) startPicture();
}

// ---- Text

// What goes from one token to the next within a character ends.
void RtfMachine::endOfCharacter() {
    toSkip_ = 0;
    inPair_ = false;
    highSurrogate_ = 0;
}

void RtfMachine::text(std::string_view text) {
    if (toSkip_ > 0) {
        const std::size_t skipped = std::min<std::size_t>(static_cast<std::size_t>(toSkip_), text.size());
        toSkip_ -= static_cast<int>(skipped);
        text.remove_prefix(skipped);
        if (text.empty()) return;
    }
    switch (state_.Destination) {
        case RtfDestination::Body:
            bodyText(text);
            break;
        case RtfDestination::Skipped:
            break;
        case RtfDestination::Fonts:
            addToFonts(text);
            break;
        case RtfDestination::Colors:
            addToColors(text);
            break;
        case RtfDestination::Picture:
            picture_.AddHex(text);
            break;
    }
}

void RtfMachine::bodyText(std::string_view text) {
    if (state_.Page == nullptr) return append(text);
    converted_.clear();
    appendFromPage(converted_, text, *state_.Page, inPair_);
    append(converted_);
}

void RtfMachine::append(std::string_view text) {
    if (text.empty()) return;
    highSurrogate_ = 0;
    if (!baseKnown_) noteBase();
    std::vector<Run>& runs = open_->Runs;
    if (runs.empty() || runs.back().Format != state_.Format) {
        if (runs.empty()) runs.reserve(2);
        runs.push_back({static_cast<std::uint32_t>(open_->Text.size()), state_.Format});
    }
    open_->Text += text;
    open_->Format = state_.Block;
}

void RtfMachine::endParagraph() {
    if (state_.Destination != RtfDestination::Body) return;
    if (++ended_ >= (fragments_ ? MaxParagraphsOfFragment : MaxParagraphs)) return append({&LineBreak, 1});
    if (!baseKnown_) noteBase();
    if (!fragments_ && open_->Text.empty()) open_->Format = state_.Block;
    open_ = &paragraphs_->emplace_back();
    open_->Format = base_.Block;
}

void RtfMachine::symbol(char byte) {
    switch (byte) {
        case '\\':
        case '{':
        case '}':
            text({&byte, 1});
            break;
        case '~':
            ownByte('\xA0');
            break;
        case '_':
            ownByte('-');
            break;
        case '\r':
        case '\n':
            endParagraph();
            break;
        default:
            break;
    }
}

void RtfMachine::hex(char byte) {
    if (!isControl(static_cast<unsigned char>(byte))) text({&byte, 1});
}

// A byte of our own code page.
void RtfMachine::ownByte(char byte) {
    if (toSkip_ > 0)
        --toSkip_;
    else if (state_.Destination == RtfDestination::Body)
        append({&byte, 1});
}

void RtfMachine::binary(std::string_view bytes) {
    if (state_.Destination != RtfDestination::Picture) return;
    // How far it reaches depends on what stands behind the group: its words alone aren't the picture.
    pictureWords_ = {};
    picture_.AddBytes(bytes);
}

// What stands behind it for readers that don't know it is left out.
void RtfMachine::unicode(std::int32_t number) {
    auto code = static_cast<char32_t>(number < 0 ? number + 0x10000 : number);
    const char32_t high = highSurrogate_;
    if (state_.Destination == RtfDestination::Picture) pictureWords_ = {};
    endOfCharacter();
    toSkip_ = state_.UnicodeSkip;
    if (isHighSurrogate(code)) {
        highSurrogate_ = code;
        return;
    }
    if (high != 0 && isLowSurrogate(code)) code = 0x10000 + ((high - 0xD800) << 10) + (code - 0xDC00);
    if (isControl(code)) return;
    converted_.clear();
    appendCodePoint(converted_, code);
    if (state_.Destination == RtfDestination::Body) append(converted_);
    if (state_.Destination == RtfDestination::Fonts) addToFonts(converted_);
}

// ---- Pictures

void RtfMachine::startPicture() {
    constexpr std::size_t longestWords = 8 << 10;
    const std::string_view rest = scanner_.Rest();
    const std::size_t end = rest.substr(0, longestWords + 1).find('}');
    pictureWords_ = end == std::string_view::npos ? std::string_view{} : rest.substr(0, end);
    behindPicture_ = rest.size() - pictureWords_.size() - 1;
    std::shared_ptr<const Picture> picture;
    if (!pictureWords_.empty() && pictures_.Recall(pictureWords_, picture)) {
        state_.Destination = RtfDestination::Body;
        appendPicture(std::move(picture));
        state_.Destination = RtfDestination::Skipped;
        scanner_.Skip(pictureWords_.size());
        return;
    }
    picture_.Begin();
}

void RtfMachine::finishPicture() {
    std::optional<Picture> read = picture_.Finish();
    if (!read) return;
    // If the group has ended with the words that were seen at its start, they are the whole picture.
    const bool whole = !pictureWords_.empty() && scanner_.Rest().size() == behindPicture_;
    appendPicture(pictures_.Keep(std::move(*read), whole ? pictureWords_ : std::string_view{}));
}

void RtfMachine::appendPicture(std::shared_ptr<const Picture> picture) {
    if (!picture || state_.Destination != RtfDestination::Body) return;
    append({&PictureMark, 1});
    open_->Pictures.push_back(std::move(picture));
}

}  // namespace talvora
