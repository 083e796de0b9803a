#include "platform/rich/RtfReader.h"

#include <iterator>
#include <utility>

#include "platform/rich/PictureStore.h"
#include "platform/rich/RtfFragmentReader.h"
#include "platform/rich/RtfMachine.h"

namespace talvora {
namespace {

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    return begin == std::string_view::npos ? std::string_view{} : text.substr(begin);
}

}  // namespace

bool isRtf(std::string_view text) {
    return withoutBlanks(text).starts_with("{\\rtf");
}

RtfContent readRtf(std::string_view rtf, PictureStore& pictures) {
    std::deque<Paragraph> paragraphs;
    RichHead head = readRtf(rtf, pictures, paragraphs);
    return {std::move(head),
            {std::make_move_iterator(paragraphs.begin()), std::make_move_iterator(paragraphs.end())}};
}

RichHead readRtf(std::string_view rtf, PictureStore& pictures, std::deque<Paragraph>& paragraphs) {
    paragraphs.assign(1, {});
    RtfMachine machine(pictures);
    machine.Read(withoutBlanks(rtf), paragraphs);
    return machine.HeadOfDocument();
}

RichHead readRtfHead(std::string_view head) {
    PictureStore none;
    std::deque<Paragraph> text(1);
    RtfMachine machine(none);
    machine.Read(head, text);
    return machine.HeadAtEnd();
}

RtfFragmentReader::RtfFragmentReader(const RichHead& head, PictureStore& pictures)
    : machine_(std::make_unique<RtfMachine>(pictures, head)) {}

RtfFragmentReader::~RtfFragmentReader() = default;

void RtfFragmentReader::Read(std::string_view fragment, std::deque<Paragraph>& paragraphs) {
    machine_->Read(fragment, paragraphs);
}

}  // namespace talvora
