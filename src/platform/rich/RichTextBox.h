#pragma once
// The control `RichTextBox`: a document with a selection. It is the model; a view binds it. Text is code page
// 1253, positions count from 0 over the plain text, in which CR LF stands between paragraphs. Nothing in a
// document is ever opened, fetched or executed.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/Property.h"
#include "platform/rich/RichDocument.h"
#include "platform/rich/RichUndo.h"

namespace talvora {

// Mouse buttons as the system numbers them.
enum class MouseButton { Left = 1, Right = 2, Middle = 4 };

class RichTextBox {
  public:
    explicit RichTextBox(bool locked = false);

    // Read-only for hands; code may always change it.
    Property<bool> Locked{false};
    Property<bool> Visible{true};
    Property<bool> Enabled{true};

    // ---- The whole document

    const RichDocument& Document() const { return document_; }
    RichDocument& Document() { return document_; }
    // The document as RTF in code page 1253.
    std::string TextRTF() const;
    void SetTextRTF(std::string_view rtf);
    // The same as SetTextRTF with head, body and tail in one string, at the cost of what is new in the body.
    // The selection is lost, as by any write of a whole document.
    void ShowBody(std::string_view head, const RichBody& body, std::string_view tail);
    // Plain text, in the form of RichDocument::Text, which all positions count over.
    std::string Text() const;
    // Raises Change only if the text is another.
    void SetText(std::string_view text);

    // ---- The selection

    std::size_t SelStart() const;
    std::size_t SelLength() const;
    // Puts the caret there, at most at the end, and selects nothing.
    void SetSelStart(std::size_t position);
    void SetSelLength(std::size_t length);
    // Puts the caret to the end of the text, at no cost.
    void SetSelStartToEnd();

    std::string SelText() const;
    // Replaces the selection; the caret goes behind the new text.
    void SetSelText(std::string_view text);
    // A whole RTF document with what is selected.
    std::string SelRTF() const;
    // Its fonts and colours are found in, or added to, this document's tables. What is no RTF is plain text.
    void SetSelRTF(std::string_view rtf);

    // The formats of the selection, nothing where it holds several. Without a selection: of what is typed
    // next, which is also what setting one then changes, until the caret moves.
    std::optional<bool> SelBold() const;
    std::optional<bool> SelItalic() const;
    std::optional<bool> SelUnderline() const;
    std::optional<bool> SelStrikeThru() const;
    std::optional<Colour> SelColor() const;  // black is the automatic colour
    std::optional<std::string> SelFontName() const;
    std::optional<double> SelFontSize() const;  // in points
    void SetSelBold(bool on);
    void SetSelItalic(bool on);
    void SetSelUnderline(bool on);
    void SetSelStrikeThru(bool on);
    void SetSelColor(Colour colour);
    void SetSelFontName(std::string_view name);
    void SetSelFontSize(double points);  // fault 5 outside the sizes that a format can hold

    // Puts what the clipboard holds in place of the selection: RTF before a picture before plain text.
    void Paste(const Clipboard& clipboard);

    Event<> Change;     // the text or a format has changed
    Event<> SelChange;  // the caret, the selection or the text around it has changed
    Event<> DblClick;
    Event<MouseButton> MouseUp;

    // ---- The view's side: caret, and what the user's hands do

    // The fixed end of the selection, and the end that moves.
    Place Anchor() const;
    Place Caret() const;
    void userSelects(Place anchor, Place caret);
    // What is typed replaces the selection and takes its first character's format, or the one before the
    // caret; CR LF, CR or LF end a paragraph. Nothing that the user's hands do changes a locked box, or makes
    // the text longer than MaxTextByHand.
    void userTypes(std::string_view text);
    void userInsertsLineBreak();
    // Deletes the selection, or one character (or paragraph end) before or behind the caret.
    void userErasesBackward();
    void userErasesForward();
    void userPastes(const Clipboard& clipboard);
    void userPastesPlain(const Clipboard& clipboard);
    // The selection as RTF and as plain text, in which a line break is CR LF.
    void userCopies(Clipboard& clipboard) const;
    void userCuts(Clipboard& clipboard);
    // Typing in one go is one step. Steps are bounded in number and memory; a write of the whole document
    // forgets them.
    void userUndoes();
    void userRedoes();
    bool CanUndo() const;
    bool CanRedo() const;

    static constexpr std::size_t MaxTextByHand = 4 << 20;

  private:
    enum class Hand { User, Code };

    Selection selection() const { return {Anchor(), Caret()}; }
    std::pair<Place, Place> range() const;
    // Sets the selection; true if it is another now.
    bool put(Selection to);
    void select(Place anchor, Place caret);
    void caretMoved();
    void wholeDocumentWritten(bool changed);

    CharFormat formatOfNext() const;
    template <class Value>
    std::optional<Value> common(Value (*of)(const RichHead&, const CharFormat&)) const;
    void reformat(const std::function<void(CharFormat&)>& edit);

    std::vector<Paragraph> plain(std::string_view text) const;
    std::vector<Paragraph> adopted(std::string_view rtf);
    std::vector<Paragraph> pastedFrom(const Clipboard& clipboard);
    // `next` is the format of what is typed next in an empty paragraph, which has none of its own.
    void insertPlain(std::string_view text, EditKind kind, Hand hand);
    void insert(std::vector<Paragraph> by, EditKind kind, Hand hand, std::optional<CharFormat> next = {});
    void erase(Place begin, Place end, EditKind kind);
    void replace(Place begin, Place end, std::vector<Paragraph> by, EditKind kind,
                 std::optional<CharFormat> next);
    void exchange(Place begin, const std::vector<Paragraph>& old, std::vector<Paragraph> by);
    void restore(Place begin, const std::vector<Paragraph>& from, const std::vector<Paragraph>& to,
                 Selection selected);
    // False if nothing of it has room.
    bool fitLength(Place begin, Place end, std::vector<Paragraph>& by);
    void fitParagraphs(Place begin, Place end, std::vector<Paragraph>& by) const;

    RichDocument document_;
    // The places themselves, unless the caret stands at the end, wherever that is.
    Selection selection_;
    bool atEnd_ = false;
    std::optional<CharFormat> next_;     // what is typed next, if it differs from what stands before
    std::optional<std::size_t> length_;  // of the text, once it was asked for
    RichUndo undo_;
};

}  // namespace talvora
