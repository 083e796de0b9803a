#pragma once
// The clipboard of the desktop: one text in one or both forms, or one picture. Text is code page 1253.

#include <memory>
#include <optional>
#include <string>

namespace talvora {

struct Picture;

// The numbers are the system's.
enum class ClipboardFormat { Text = 1, RTF = -16639 };

class Clipboard {
  public:
    virtual ~Clipboard() = default;

    virtual void Clear() = 0;
    // Adds this form to what the clipboard holds since the last Clear.
    virtual void SetText(const std::string& text, ClipboardFormat format = ClipboardFormat::Text) = 0;
    virtual void SetData(std::shared_ptr<const Picture> picture) = 0;

    // Nothing if the clipboard doesn't hold that form.
    virtual std::optional<std::string> GetText(ClipboardFormat format = ClipboardFormat::Text) const = 0;
    virtual std::shared_ptr<const Picture> GetData() const = 0;
};

}  // namespace talvora
