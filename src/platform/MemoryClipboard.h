#pragma once
// A clipboard of the process itself, for a program without a screen and for tests.

#include <map>
#include <utility>

#include "platform/Clipboard.h"

namespace talvora {

class MemoryClipboard final : public Clipboard {
  public:
    void Clear() override {
        texts_.clear();
        picture_ = nullptr;
    }
    void SetText(const std::string& text, ClipboardFormat format) override { texts_[format] = text; }
    void SetData(std::shared_ptr<const Picture> picture) override { picture_ = std::move(picture); }

    std::optional<std::string> GetText(ClipboardFormat format) const override {
        const auto found = texts_.find(format);
        if (found == texts_.end()) return std::nullopt;
        return found->second;
    }
    std::shared_ptr<const Picture> GetData() const override { return picture_; }

  private:
    std::map<ClipboardFormat, std::string> texts_;
    std::shared_ptr<const Picture> picture_;
};

}  // namespace talvora
