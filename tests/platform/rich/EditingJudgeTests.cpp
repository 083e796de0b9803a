// A random session at a box, judged by the simplest model there is: a row of characters, each with its
// format.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/MemoryClipboard.h"
#include "platform/rich/ParagraphEdit.h"
#include "platform/rich/RichTextBox.h"

namespace talvora::test {
namespace {

struct Cell {
    char Character;
    CharFormat Format;

    bool isLetter() const { return Character != '\r' && Character != '\n'; }
    bool operator==(const Cell& b) const {
        return Character == b.Character && (Format == b.Format || !isLetter());
    }
};
using Cells = std::vector<Cell>;

Cells cellsOf(const RichDocument& document) {
    Cells cells;
    for (std::uint64_t number = document.FirstNumber(); number < document.EndNumber(); ++number) {
        if (number != document.FirstNumber()) cells.insert(cells.end(), {{'\r', {}}, {'\n', {}}});
        const Paragraph& paragraph = document.At(number);
        for (std::size_t i = 0; i < paragraph.Text.size(); ++i) {
            cells.push_back({paragraph.Text[i], formatOf(paragraph, i)});
        }
        const auto wrong = [](const Run& a, const Run& b) {
            return a.Begin >= b.Begin || a.Format == b.Format;
        };
        EXPECT_EQ(std::ranges::adjacent_find(paragraph.Runs, wrong), paragraph.Runs.end())
            << "not normalised";
    }
    return cells;
}

class Session {
  public:
    explicit Session(unsigned seed) : random_(seed) {}

    void step() {
        if (box_.CanUndo() && below(8) == 0) {
            box_.userUndoes();
            box_.userRedoes();
            next_ = RichHead().Base;
        }
        choose();
        change();
        ASSERT_EQ(cellsOf(box_.Document()), cells_) << box_.TextRTF();
        ASSERT_EQ(box_.SelStart(), begin_);
        ASSERT_EQ(box_.SelLength(), end_ - begin_);
    }

    void undoAndRedoEverything() {
        while (box_.CanUndo()) box_.userUndoes();
        EXPECT_EQ(box_.Text(), "");
        while (box_.CanRedo()) box_.userRedoes();
        EXPECT_EQ(cellsOf(box_.Document()), cells_);
    }

  private:
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }
    Cells::iterator at(std::size_t position) {
        return cells_.begin() + static_cast<std::ptrdiff_t>(position);
    }
    bool letterAt(std::size_t position) const {
        return position < cells_.size() && cells_[position].isLetter();
    }
    std::size_t somewhere(std::size_t from) {
        const std::size_t position = from + below(std::min<std::size_t>(cells_.size() - from, 30) + 1);
        return position > from && cells_[position - 1].Character == '\r' ? position - 1 : position;
    }

    // The caret goes elsewhere first: so what is typed next follows from the text alone.
    void choose() {
        box_.userSelects(box_.Document().Begin(), box_.Document().End());
        begin_ = somewhere(0);
        end_ = below(2) == 0 ? begin_ : somewhere(begin_);
        box_.userSelects(box_.Document().PlaceAt(end_), box_.Document().PlaceAt(begin_));
    }

    CharFormat formatOfNext() const {
        if (cells_.empty()) return next_;
        if (begin_ != end_ && letterAt(begin_)) return cells_[begin_].Format;
        if (begin_ > 0 && cells_[begin_ - 1].isLetter()) return cells_[begin_ - 1].Format;
        return letterAt(begin_) ? cells_[begin_].Format : RichHead().Base;
    }

    void replace(const Cells& by) {
        next_ = formatOfNext();
        cells_.insert(cells_.erase(at(begin_), at(end_)), by.begin(), by.end());
        begin_ = end_ = begin_ + by.size();
    }

    void type(std::string_view text) {
        Cells by;
        for (const char c : text) by.push_back({c, formatOfNext()});
        replace(by);
    }

    void change();

    std::mt19937 random_;
    RichTextBox box_;
    MemoryClipboard clipboard_;
    Cells cells_;
    Cells copied_;
    CharFormat next_ = RichHead().Base;  // in an empty document
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

void Session::change() {
    const bool selected = begin_ != end_;
    const auto kind = below(7);
    if (kind <= 1) {
        const std::vector<std::string_view> texts = {"a", "xyz ", "\r\n", "q\r\nw", "\v", "\t\\}", "\xe1"};
        const std::string_view text = texts[below(texts.size())];
        kind == 0 ? box_.userTypes(text) : box_.SetSelText(text);
        type(text);
    } else if (kind == 2 && begin_ > 0) {
        box_.userErasesBackward();
        if (!selected) begin_ -= cells_[begin_ - 1].isLetter() ? 1 : 2;
        replace({});
    } else if (kind == 3 && end_ < cells_.size()) {
        box_.userErasesForward();
        if (!selected) end_ += letterAt(end_) ? 1 : 2;
        replace({});
    } else if (kind == 4 && selected) {
        box_.SetSelColor(0x0000FF);
        for (std::size_t i = begin_; i < end_; ++i) cells_[i].Format.Color = 1;
    } else if (kind == 5 && selected) {
        box_.userCuts(clipboard_);
        copied_.assign(at(begin_), at(end_));
        replace({});
    } else if (kind == 6 && !copied_.empty()) {
        box_.userPastes(clipboard_);
        replace(copied_);
    }
}

TEST(Editing, IsThatOfARowOfCharacters) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    for (unsigned round = 0; round < 10; ++round) {
        Session session(seed + round);
        for (int i = 0; i < 300; ++i)
            ASSERT_NO_FATAL_FAILURE(session.step()) << "round " << round << ", step " << i;
        session.undoAndRedoEverything();
    }
}

}  // namespace
}  // namespace talvora::test
