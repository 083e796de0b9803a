#include "platform/rich/ParagraphEdit.h"

#include <algorithm>
#include <iterator>

#include "platform/RuntimeError.h"

namespace talvora {

namespace {

std::ptrdiff_t picturesIn(std::string_view text) {
    return std::ranges::count(text, PictureMark);
}

void copyPictures(const Paragraph& from, std::size_t begin, Paragraph& to) {
    const auto skipped = picturesIn(std::string_view(from.Text).substr(0, begin));
    const auto copied = picturesIn(to.Text);
    if (skipped + copied > std::ssize(from.Pictures)) throw RuntimeError(Fault::SubscriptOutOfRange);
    to.Pictures.assign(from.Pictures.begin() + skipped, from.Pictures.begin() + skipped + copied);
}

auto runAt(const Paragraph& paragraph, std::size_t offset) {
    const auto next = std::ranges::upper_bound(paragraph.Runs, offset, {}, &Run::Begin);
    if (next == paragraph.Runs.begin()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return next - 1;
}

bool hasPlace(char c) {
    return static_cast<unsigned char>(c) >= ' ' ? c != '\x7f' : c == '\t' || c == LineBreak;
}

void fill(Paragraph& paragraph, std::string_view text, const CharFormat& format) {
    paragraph.Text.reserve(text.size());
    std::ranges::copy_if(text, std::back_inserter(paragraph.Text), hasPlace);
    if (!paragraph.Text.empty() && paragraph.Runs.empty()) paragraph.Runs.push_back({0, format});
}

}  // namespace

const CharFormat& formatOf(const Paragraph& paragraph, std::size_t offset) {
    if (offset >= paragraph.Text.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return runAt(paragraph, offset)->Format;
}

std::span<const Run> runsWithin(const Paragraph& paragraph, std::size_t begin, std::size_t end) {
    if (begin >= end) return {};
    return {runAt(paragraph, begin), runAt(paragraph, end - 1) + 1};
}

Paragraph cutOut(const Paragraph& paragraph, std::size_t begin, std::size_t end) {
    if (begin > end || end > paragraph.Text.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    Paragraph cut{{}, {}, {}, paragraph.Format};
    if (begin == end) return cut;
    cut.Text.assign(paragraph.Text, begin, end - begin);
    const auto runs = runsWithin(paragraph, begin, end);
    cut.Runs.assign(runs.begin(), runs.end());
    for (Run& run : cut.Runs) run.Begin -= std::min(run.Begin, static_cast<std::uint32_t>(begin));
    if (!paragraph.Pictures.empty()) copyPictures(paragraph, begin, cut);
    return cut;
}

void join(Paragraph& paragraph, const Paragraph& from) {
    const auto offset = static_cast<std::uint32_t>(paragraph.Text.size());
    for (const Run& run : from.Runs) {
        if (!paragraph.Runs.empty() && paragraph.Runs.back().Format == run.Format) continue;
        paragraph.Runs.push_back({offset + run.Begin, run.Format});
    }
    paragraph.Text += from.Text;
    paragraph.Pictures.insert(paragraph.Pictures.end(), from.Pictures.begin(), from.Pictures.end());
}

void normalise(std::vector<Run>& runs) {
    const auto same = [](const Run& a, const Run& b) { return a.Format == b.Format; };
    runs.erase(std::unique(runs.begin(), runs.end(), same), runs.end());
}

std::vector<Paragraph> plainParagraphs(std::string_view text, const CharFormat& format,
                                       const ParagraphFormat& paragraphFormat) {
    std::vector<Paragraph> paragraphs;
    for (std::size_t begin = 0;;) {
        const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        if (paragraphs.size() < MaxParagraphs) {
            paragraphs.push_back({{}, {}, {}, paragraphFormat});
        } else {
            paragraphs.back().Text += LineBreak;
        }
        fill(paragraphs.back(), text.substr(begin, end - begin), format);
        if (end == text.size()) return paragraphs;
        begin = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
}

std::size_t lengthOf(const std::vector<Paragraph>& paragraphs) {
    std::size_t length = paragraphs.empty() ? 0 : 2 * (paragraphs.size() - 1);
    for (const Paragraph& paragraph : paragraphs) length += paragraph.Text.size();
    return length;
}

void shorten(std::vector<Paragraph>& paragraphs, std::size_t length) {
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        const std::size_t size = paragraphs[i].Text.size();
        if (size + 2 <= length) {
            length -= size + 2;
            continue;
        }
        if (size > length) paragraphs[i] = cutOut(paragraphs[i], 0, length);
        paragraphs.resize(i + 1);
        return;
    }
}

}  // namespace talvora
