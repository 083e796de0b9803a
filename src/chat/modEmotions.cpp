#include "chat/modEmotions.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/Trap.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view FileSeparator = ":=:";
constexpr std::string_view EntrySeparator = "\x02";

}  // namespace

// The table made ready for searching: a code can only end where a blank stands, so the codes are kept as a
// tree of their characters from the last to the first.
class modEmotions::Table {
  public:
    explicit Table(std::vector<std::string> entries);

    void replaceIn(std::string& text, Trap& step) const;

    const std::vector<std::string> Entries;

  private:
    struct Emotion {
        std::string Code;  // in upper case
        std::string RTF;   // with its line ends
        bool HasRTF = false;
    };
    using Numbers = std::vector<std::size_t>;  // of emotions, ascending
    struct Node {
        std::vector<std::pair<unsigned char, std::size_t>> Before;  // upper-case characters, and their nodes
        Numbers Codes;                                              // that begin here
    };
    // What the passes over one text use in turn.
    struct Buffers {
        std::vector<std::size_t> Blanks;
        std::string Grown;
    };

    void add(const std::string& entry);
    std::size_t nodeBefore(std::size_t node, unsigned char upper) const;
    std::size_t lowestAt(std::string_view text, std::size_t blank, std::size_t from,
                         std::size_t lowest) const;
    bool endsIn(const Emotion& emotion, std::string_view text, std::size_t end) const;
    std::size_t lowestMatch(std::string_view text, std::size_t from) const;
    std::size_t nextBlank(const Emotion& emotion, std::string_view text, std::size_t from) const;
    bool replaceAll(const Emotion& emotion, std::string& text, Buffers& buffers) const;

    std::array<unsigned char, 256> upper_{};
    std::vector<Emotion> emotions_;
    std::vector<Node> nodes_{1};           // the first is that of all codes' ends
    std::array<std::size_t, 256> last_{};  // the node of a last character, 0 if no code ends so
    Numbers withoutRTF_;
};

modEmotions::Table::Table(std::vector<std::string> entries) : Entries(std::move(entries)) {
    std::string all(256, '\0');
    for (std::size_t c = 0; c < all.size(); ++c) all[c] = static_cast<char>(c);
    all = UCase(all);
    for (std::size_t c = 0; c < all.size(); ++c) upper_[c] = static_cast<unsigned char>(all[c]);
    for (const std::string& entry : Entries)
        if (!entry.empty()) add(entry);
    for (std::size_t c = 0; c < last_.size(); ++c) last_[c] = nodeBefore(0, upper_[c]);
}

void modEmotions::Table::add(const std::string& entry) {
    const std::size_t number = emotions_.size();
    const auto fields = Split(entry, std::string_view(&Separator, 1));
    Emotion emotion;
    emotion.Code = UCase(fields.front());
    emotion.HasRTF = fields.size() > 1;
    if (emotion.HasRTF) emotion.RTF = Replace(fields[1], LineEndMark, "\r\n");
    if (!emotion.HasRTF) {
        withoutRTF_.push_back(number);
    } else {
        std::size_t node = 0;
        for (std::size_t i = emotion.Code.size(); i > 0; --i) {
            const auto upper = static_cast<unsigned char>(emotion.Code[i - 1]);
            std::size_t next = nodeBefore(node, upper);
            if (next == 0) {
                next = nodes_.size();
                nodes_.emplace_back();
                nodes_[node].Before.emplace_back(upper, next);
            }
            node = next;
        }
        nodes_[node].Codes.push_back(number);
    }
    emotions_.push_back(std::move(emotion));
}

// The node of the codes that go on so; 0 if there is none.
std::size_t modEmotions::Table::nodeBefore(std::size_t node, unsigned char upper) const {
    for (const auto& [character, next] : nodes_[node].Before)
        if (character == upper) return next;
    return 0;
}

// Whether the emotion's code stands right before `end`.
bool modEmotions::Table::endsIn(const Emotion& emotion, std::string_view text, std::size_t end) const {
    const std::string& code = emotion.Code;
    if (code.size() > end) return false;
    const std::size_t begin = end - code.size();
    for (std::size_t i = code.size(); i > 0; --i) {
        const auto c = static_cast<unsigned char>(text[begin + i - 1]);
        if (upper_[c] != static_cast<unsigned char>(code[i - 1])) return false;
    }
    return true;
}

// The first emotion from number `from` on whose code stands in the text; their count if there is none.
std::size_t modEmotions::Table::lowestMatch(std::string_view text, std::size_t from) const {
    std::size_t lowest = emotions_.size();
    for (std::size_t at = text.find(' '); at != std::string_view::npos && lowest > from;
         at = text.find(' ', at + 1)) {
        lowest = lowestAt(text, at, from, lowest);
    }
    return lowest;
}

// The same for the codes in front of one blank, if it is lower than `lowest`.
std::size_t modEmotions::Table::lowestAt(std::string_view text, std::size_t blank, std::size_t from,
                                         std::size_t lowest) const {
    const auto take = [&](const Numbers& codes) {
        const auto found = std::lower_bound(codes.begin(), codes.end(), from);
        if (found != codes.end()) lowest = std::min(lowest, *found);
    };
    take(nodes_[0].Codes);
    if (blank == 0) return lowest;
    std::size_t node = last_[static_cast<unsigned char>(text[blank - 1])];
    for (std::size_t at = blank - 1; node != 0; --at) {
        take(nodes_[node].Codes);
        if (at == 0) break;
        node = nodeBefore(node, upper_[static_cast<unsigned char>(text[at - 1])]);
    }
    return lowest;
}

// The blank behind the first occurrence of the code that begins at `from` or later.
std::size_t modEmotions::Table::nextBlank(const Emotion& emotion, std::string_view text,
                                          std::size_t from) const {
    std::size_t at = text.find(' ', from + emotion.Code.size());
    while (at != std::string_view::npos && !endsIn(emotion, text, at)) at = text.find(' ', at + 1);
    return at;
}

// False, and nothing is replaced, if the code isn't there or its RTF would make the text too long.
bool modEmotions::Table::replaceAll(const Emotion& emotion, std::string& text, Buffers& buffers) const {
    const std::size_t size = emotion.Code.size() + 1;
    const std::size_t growth = emotion.RTF.size() - std::min(emotion.RTF.size(), size);
    auto& [blanks, grown] = buffers;
    blanks.clear();
    for (std::size_t at = nextBlank(emotion, text, 0); at != std::string::npos;
         at = nextBlank(emotion, text, at + 1)) {
        blanks.push_back(at);
        if (growth > 0 && text.size() + blanks.size() * growth > LongestText) return false;
    }
    if (blanks.empty()) return false;
    grown.clear();
    grown.reserve(text.size() + blanks.size() * growth);
    std::size_t begin = 0;
    for (const std::size_t blank : blanks) {
        grown.append(text, begin, blank + 1 - size - begin).append(emotion.RTF);
        begin = blank + 1;
    }
    grown.append(text, begin);
    text.swap(grown);
    return true;
}

// As if each entry in its turn went over the whole text: replace its code, then every mark of a line end. The
// entries in between whose code isn't there would change nothing.
void modEmotions::Table::replaceIn(std::string& text, Trap& step) const {
    bool hasMarks = text.find(LineEndMark) != std::string::npos;
    Buffers buffers;
    for (std::size_t from = 0;;) {
        const auto broken = std::lower_bound(withoutRTF_.begin(), withoutRTF_.end(), from);
        std::size_t number = hasMarks ? 0 : lowestMatch(text, from);
        if (broken != withoutRTF_.end()) number = std::min(number, *broken);
        if (number >= emotions_.size()) return;
        step([&] {
            if (!emotions_[number].HasRTF) throw RuntimeError(Fault::SubscriptOutOfRange);
            // RTF and the text around it may make up a new mark.
            if (replaceAll(emotions_[number], text, buffers)) {
                hasMarks = hasMarks || text.find(LineEndMark) != std::string::npos;
            }
        });
        if (hasMarks) text = Replace(text, LineEndMark, "\r\n");
        hasMarks = false;
        from = number + 1;
    }
}

modEmotions::modEmotions(Files& files, GlobError& globError) : files_(files), globError_(globError) {}

modEmotions::~modEmotions() = default;

void modEmotions::LoadEmotions() {
    std::string joined;
    std::int32_t count = 0;
    File file = files_.Open("system\\emoticons.dat", FileMode::Input);
    do {
        const std::string line = Replace(Trim(file.ReadLine()), FileSeparator, std::string(1, Separator));
        if (line.empty()) continue;
        if (count++ > 0) joined += EntrySeparator;
        joined += line;
    } while (!file.AtEnd());
    table_ = std::make_shared<const Table>(Split(joined, EntrySeparator));
    emotionCount_ = count;
}

void modEmotions::DoWithout() {
    table_ = std::make_shared<const Table>(std::vector<std::string>());
    emotionCount_ = 0;
}

std::string modEmotions::ReplaceEmotion(std::string Text) const {
    ReplaceEmotionIn(Text);
    return Text;
}

void modEmotions::ReplaceEmotionIn(std::string& text) const {
    // A report lets other events run, and the table may be loaded anew meanwhile.
    const auto table = table_;
    trapped(globError_, "ReplaceEmotion", [&](Trap& step) {
        text += ' ';
        const bool loaded = step([&] {
            if (table == nullptr) throw RuntimeError(Fault::SubscriptOutOfRange);
        });
        if (loaded) table->replaceIn(text, step);
    });
}

const std::vector<std::string>& modEmotions::EmotionList() const {
    if (table_ == nullptr) throw RuntimeError(Fault::SubscriptOutOfRange);
    return table_->Entries;
}

}  // namespace talvora
