#pragma once
// The reader's state and what each token does to it. Groups lie on a stack of bounded depth; what is nested
// deeper is counted, so that braces still match, but keeps no state of its own. Text goes straight into the
// last paragraph.
//
// A paragraph has the format that is in force at its last character, an empty one that at its end.

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/rich/RichText.h"
#include "platform/rich/RtfPicture.h"
#include "platform/rich/RtfScanner.h"
#include "platform/rich/RtfWords.h"

namespace talvora {

class PictureStore;
struct CodePage;

class RtfMachine {
  public:
    // Reads whole documents, or what stands before a document's text: tables are taken from the input.
    explicit RtfMachine(PictureStore& pictures);
    // Reads fragments under a head: tables stay, and empty paragraphs have the base's format.
    RtfMachine(PictureStore& pictures, const RichHead& head);

    // Goes on in the last paragraph, from the base state. All groups are closed at the end.
    void Read(std::string_view input, std::deque<Paragraph>& paragraphs);

    // The tables, and as base the state at the input's end.
    RichHead HeadAtEnd() const;
    // The tables, and as base font and size of the first text.
    RichHead HeadOfDocument() const;

  private:
    struct State {
        CharFormat Format;
        ParagraphFormat Block;
        RtfDestination Destination = RtfDestination::Body;
        int UnicodeSkip = 1;
        const CodePage* Page = nullptr;
    };

    void run();

    void open();
    void close();
    void closeAll();
    void start(const RtfWord& word, bool starred);
    void enter(RtfDestination destination);

    void endOfCharacter();
    void text(std::string_view text);
    void bodyText(std::string_view text);
    void append(std::string_view text);
    void endParagraph();
    void symbol(char byte);
    void hex(char byte);
    void ownByte(char byte);
    void binary(std::string_view bytes);
    void unicode(std::int32_t number);

    void startPicture();
    void finishPicture();
    void appendPicture(std::shared_ptr<const Picture> picture);

    void apply(const RtfWord& word);
    void setFlag(RtfFlag flag, bool on);
    void setValue(RtfValue value);
    void setDocumentValue(RtfValue value, std::int32_t number);
    void setPictureValue(RtfValue value, std::int32_t number);
    void setPictureKind(std::optional<Picture::Kind> kind);
    void act(RtfAction action);

    void startTable(RtfDestination table);
    void startFont(int number);
    void addToFonts(std::string_view text);
    void addFont();
    void selectFont(int number);
    void addToColors(std::string_view text);
    std::uint16_t colorOf(int number) const;
    void setCodePage(int number);
    void noteBase();
    void noteEnd();

    PictureStore& pictures_;
    const bool fragments_;
    RichHead head_;
    State base_;

    RtfScanner scanner_{{}};
    std::deque<Paragraph>* paragraphs_ = nullptr;
    Paragraph* open_ = nullptr;  // the last one
    State state_;
    std::vector<State> stack_;
    std::size_t ended_ = 0;        // paragraphs of this reading
    std::size_t flattened_ = 0;    // groups below the deepest that is kept
    std::size_t skippedFrom_ = 0;  // which of these, counted from 1, has begun to be skipped
    int toSkip_ = 0;               // characters behind a \u that stand for it
    bool inPair_ = false;          // half of a two-byte character was read
    char32_t highSurrogate_ = 0;
    std::string converted_;

    // Of documents.
    bool fontsRead_ = false;
    bool colorsRead_ = false;
    bool baseKnown_ = true;
    CharFormat firstFormat_;
    bool closed_ = false;  // the outermost group has ended
    State end_;
    int defaultFont_ = 0;
    int fontNumber_ = 0;
    FontEntry font_;
    Colour color_ = 0;
    std::vector<std::uint16_t> fontOfNumber_;
    std::vector<const CodePage*> pageOfFont_;

    RtfPicture picture_;
    std::string_view pictureWords_;  // from the group's beginning to the next brace
    std::size_t behindPicture_ = 0;  // what was left to read behind that
};

}  // namespace talvora
