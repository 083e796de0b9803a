#pragma once
// Reads fragments of a document: each on its own from the state that the head leaves, and closed at its end.
// The tables are the head's; a fragment cannot change them.

#include <deque>
#include <memory>
#include <string_view>

#include "platform/rich/RichText.h"

namespace talvora {

class PictureStore;
class RtfMachine;

class RtfFragmentReader {
  public:
    RtfFragmentReader(const RichHead& head, PictureStore& pictures);
    ~RtfFragmentReader();

    // Goes on in the last paragraph, of which there must be one.
    void Read(std::string_view fragment, std::deque<Paragraph>& paragraphs);

  private:
    std::unique_ptr<RtfMachine> machine_;
};

}  // namespace talvora
