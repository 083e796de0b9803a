#include "desktop/PictureCache.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>

namespace talvora {

namespace {

constexpr std::int64_t FramePixels = 4 << 20;  // decoded in one frame

// An entry's own cost bounds their number too.
std::int64_t costOf(int width, int height) {
    return std::int64_t{width} * height + 256;
}

// A bitmap's bytes as a file: a header in front that says where its pixels begin.
QByteArray bitmapFile(const std::string& dib) {
    if (dib.size() < 40) return {};
    const auto number = [&](std::size_t at) { return qFromLittleEndian<quint32>(dib.data() + at); };
    const quint32 header = number(0);
    const quint32 bits = qFromLittleEndian<quint16>(dib.data() + 14);
    const quint32 compression = number(16);
    const quint32 colors = number(32);
    if (header < 40 || header > 1024 || colors > 256) return {};
    quint32 palette = bits <= 8 ? 4 * (colors != 0 ? colors : 1U << bits) : 4 * colors;
    if (header == 40 && compression == 3) palette += 12;  // masks of the colours
    QByteArray file(14, '\0');
    file[0] = 'B';
    file[1] = 'M';
    qToLittleEndian<quint32>(static_cast<quint32>(dib.size() + 14), file.data() + 2);
    qToLittleEndian<quint32>(14 + header + palette, file.data() + 10);
    return file.append(dib.data(), static_cast<qsizetype>(dib.size()));
}

}  // namespace

QImage decodePicture(const Picture& picture) {
    const bool isDib = picture.Type == Picture::Kind::Dib;
    QByteArray bytes =
        isDib ? bitmapFile(picture.Bytes)
              : QByteArray::fromRawData(picture.Bytes.data(), static_cast<qsizetype>(picture.Bytes.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const char* format = isDib ? "bmp" : picture.Type == Picture::Kind::Png ? "png" : "jpeg";
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.width() != picture.PixelWidth || size.height() != picture.PixelHeight) return {};
    if (std::int64_t{size.width()} * size.height() > MaxPicturePixels) return {};
    QImage image;
    if (!reader.read(&image)) return {};
    image.setDevicePixelRatio(1);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void PictureCache::beginFrame() {
    decoded_ = 0;
    waiting_ = false;
}

PictureCache::Entry PictureCache::get(const std::shared_ptr<const Picture>& picture, QSize size) {
    // What is shown enlarged is kept as it came.
    size = size.boundedTo({picture->PixelWidth, picture->PixelHeight}).expandedTo({1, 1});
    const std::pair key{picture.get(), std::pair{size.width(), size.height()}};
    if (const auto found = places_.find(key); found != places_.end()) {
        if (found->second->Source.lock() == picture) {
            kept_.splice(kept_.begin(), kept_, found->second);
            return found->second->Shown;
        }
        pixels_ -= costOf(size.width(), size.height());
        kept_.erase(found->second);
        places_.erase(found);
    }
    const std::int64_t cost = std::int64_t{picture->PixelWidth} * picture->PixelHeight;
    if (decoded_ > 0 && decoded_ + cost > FramePixels) {
        waiting_ = true;
        return {};
    }
    decoded_ += cost;
    Entry entry{decodePicture(*picture)};
    entry.Broken = entry.Image.isNull();
    if (!entry.Broken && entry.Image.size() != size) {
        entry.Image = entry.Image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    kept_.push_front({picture, entry, key});
    places_[key] = kept_.begin();
    pixels_ += costOf(size.width(), size.height());
    trim();
    return entry;
}

void PictureCache::trim() {
    while (pixels_ > MaxPixels && kept_.size() > 1) {
        const auto& size = kept_.back().Key.second;
        pixels_ -= costOf(size.first, size.second);
        places_.erase(kept_.back().Key);
        kept_.pop_back();
    }
}

}  // namespace talvora
