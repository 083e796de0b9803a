#include "desktop/QtClipboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <algorithm>

#include "desktop/PictureCache.h"
#include "desktop/QtText.h"
#include "platform/rich/RichText.h"

namespace talvora {

namespace {

constexpr const char* richNames[] = {"text/rtf", "application/rtf", "text/richtext"};
constexpr qsizetype MaxClipboard = 32 << 20;  // bytes of a text that is taken
constexpr int PastedTwips = 15;

QClipboard& clipboard() {
    return *QGuiApplication::clipboard();
}

}  // namespace

// A copy of what we have put there so far, for a form to be added: the toolkit takes all forms at once.
QMimeData* QtClipboard::withOwn() {
    auto* data = new QMimeData;
    if (own_.isNull() || clipboard().mimeData() != own_) return data;
    for (const QString& format : own_->formats()) data->setData(format, own_->data(format));
    if (own_->hasImage()) data->setImageData(own_->imageData());
    return data;
}

void QtClipboard::give(QMimeData* data) {
    own_ = data;
    clipboard().setMimeData(data);
}

void QtClipboard::Clear() {
    own_.clear();
    clipboard().clear();
}

void QtClipboard::SetText(const std::string& text, ClipboardFormat format) {
    QMimeData* data = withOwn();
    if (format == ClipboardFormat::RTF) {
        const QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
        for (const char* name : richNames) data->setData(name, bytes);
    } else {
        data->setText(toQString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    }
    give(data);
}

void QtClipboard::SetData(std::shared_ptr<const Picture> picture) {
    if (picture == nullptr) return;
    const QImage image = decodePicture(*picture);
    if (image.isNull()) return;
    QMimeData* data = withOwn();
    data->setImageData(image);
    give(data);
}

std::optional<std::string> QtClipboard::GetText(ClipboardFormat format) const {
    const QMimeData* data = clipboard().mimeData();
    if (data == nullptr) return std::nullopt;
    if (format == ClipboardFormat::Text) {
        if (!data->hasText()) return std::nullopt;
        return fromQString(data->text().left(MaxClipboard));
    }
    for (const char* name : richNames) {
        if (!data->hasFormat(name)) continue;
        const QByteArray bytes = data->data(name).left(MaxClipboard);
        return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }
    return std::nullopt;
}

std::shared_ptr<const Picture> QtClipboard::GetData() const {
    const QMimeData* data = clipboard().mimeData();
    if (data == nullptr || !data->hasImage()) return nullptr;
    const QImage image = qvariant_cast<QImage>(data->imageData());
    if (image.isNull() || std::int64_t{image.width()} * image.height() > MaxPicturePixels) return nullptr;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG") || static_cast<std::size_t>(png.size()) > MaxPictureBytes) return nullptr;
    auto picture = std::make_shared<Picture>();
    picture->Bytes.assign(png.constData(), static_cast<std::size_t>(png.size()));
    picture->PixelWidth = image.width();
    picture->PixelHeight = image.height();
    picture->WidthTwips = std::min(MaxTwips, image.width() * PastedTwips);
    picture->HeightTwips = std::min(MaxTwips, image.height() * PastedTwips);
    return picture;
}

}  // namespace talvora
