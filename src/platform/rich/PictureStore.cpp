#include "platform/rich/PictureStore.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace talvora {
namespace {

constexpr std::size_t MaxRemembered = 128;
constexpr std::size_t LeastWords = 64;
constexpr std::size_t MostWords = 8 << 10;

// Looks at samples only: who finds the key compares the whole.
std::uint64_t keyOf(std::string_view words) {
    std::uint64_t key = words.size();
    for (std::size_t part = 1; part <= 8; ++part) {
        std::uint64_t sample = 0;
        std::memcpy(&sample, words.data() + (words.size() - sizeof sample) * part / 8, sizeof sample);
        key = (key ^ sample) * 0x9E3779B97F4A7C15U;
        key ^= key >> 32;
    }
    return key;
}

}  // namespace

bool PictureStore::Recall(std::string_view words, Shared& picture) {
    if (words_.empty() || words.size() < LeastWords) return false;
    const auto found = words_.find(keyOf(words));
    if (found == words_.end() || found->second.Text != words) return false;
    picture = count(found->second.Content);
    return true;
}

void PictureStore::remember(std::string_view words, const std::shared_ptr<Stored>& stored) {
    if (words.size() < LeastWords || words.size() > MostWords) return;
    if (words_.size() >= MaxRemembered) words_.clear();
    words_.insert_or_assign(keyOf(words), Words{std::string(words), stored});
}

PictureStore::Shared PictureStore::Keep(Picture picture, std::string_view words) {
    // The size counts too: the same bytes in thousands of sizes are thousands of pictures.
    const auto size =
        static_cast<std::size_t>(picture.WidthTwips) << 16 ^ static_cast<std::size_t>(picture.HeightTwips);
    const std::size_t hash = std::hash<std::string_view>{}(picture.Bytes) ^ size * 0x9E3779B97F4A7C15U;
    const auto [begin, end] = table_.equal_range(hash);
    for (auto at = begin; at != end; ++at) {
        const std::shared_ptr<Stored> stored = at->second.lock();
        if (!stored || !(stored->Content == picture)) continue;
        remember(words, stored);
        return count(stored);
    }
    if (table_.size() >= sweepAt_) sweep();
    const auto stored = std::make_shared<Stored>();
    stored->Content = std::move(picture);
    stored->Content.Bytes.shrink_to_fit();
    table_.emplace(hash, stored);
    remember(words, stored);
    return count(stored);
}

PictureStore::Shared PictureStore::count(const std::shared_ptr<Stored>& stored) {
    const Picture& content = stored->Content;
    if (stored->CountedIn != reading_) {
        const std::int64_t size = std::int64_t{content.PixelWidth} * content.PixelHeight;
        if (pixels_ + size > MaxDocumentPixels) return nullptr;
        pixels_ += size;
        stored->CountedIn = reading_;
    }
    return {stored, &content};
}

void PictureStore::sweep() {
    std::erase_if(table_, [](const auto& entry) { return entry.second.expired(); });
    sweepAt_ = std::max<std::size_t>(64, table_.size() * 2);
}

}  // namespace talvora
