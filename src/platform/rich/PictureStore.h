#pragma once
// The pictures of a document. Equal ones are one object, which lives as long as somebody shows it; what came
// lately in the same words is found again without being decoded. It also sees to it that one reading brings
// no more pixels than a document may hold.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/rich/RichText.h"

namespace talvora {

class PictureStore {
  public:
    using Shared = std::shared_ptr<const Picture>;

    // A document or fragment begins: pictures are counted anew.
    void BeginReading() {
        ++reading_;
        pixels_ = 0;
    }

    // The one object equal to this checked picture; nothing if its pixels are too many for this reading.
    // `words` are those by which it can be recalled, if it can.
    Shared Keep(Picture picture, std::string_view words = {});
    // Whether exactly these words were kept; the picture is as Keep would give it.
    bool Recall(std::string_view words, Shared& picture);

  private:
    struct Stored {
        Picture Content;
        std::uint64_t CountedIn = 0;
    };

    struct Words {
        std::string Text;
        std::shared_ptr<Stored> Content;
    };

    Shared count(const std::shared_ptr<Stored>& stored);
    void remember(std::string_view words, const std::shared_ptr<Stored>& stored);
    void sweep();

    std::unordered_multimap<std::size_t, std::weak_ptr<Stored>> table_;
    std::unordered_map<std::uint64_t, Words> words_;
    std::size_t sweepAt_ = 64;
    std::uint64_t reading_ = 0;
    std::int64_t pixels_ = 0;
};

}  // namespace talvora
