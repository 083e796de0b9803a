#pragma once
// The desktop's clipboard. Rich text goes as bytes under the names that office programs use, a picture as an
// image. What other programs put there is taken within bounds.

#include <QMimeData>
#include <QPointer>

#include "platform/Clipboard.h"

namespace talvora {

class QtClipboard final : public Clipboard {
  public:
    void Clear() override;
    void SetText(const std::string& text, ClipboardFormat format) override;
    void SetData(std::shared_ptr<const Picture> picture) override;

    std::optional<std::string> GetText(ClipboardFormat format) const override;
    std::shared_ptr<const Picture> GetData() const override;

  private:
    QMimeData* withOwn();
    void give(QMimeData* data);

    QPointer<const QMimeData> own_;  // what we have put there; the toolkit owns it
};

}  // namespace talvora
