#include "desktop/SvgIconEngine.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QtMath>
#include <algorithm>

#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr int Largest = 1024;  // pixels of a side
constexpr double DisabledOpacity = 0.4;

// The colours of one painting.
struct Inks {
    QColor Text;
    QColor Accent;
    QColor Ground;  // behind a selected row; not valid elsewhere
};

Inks inksOf(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected) {
        const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
        return {text, text, palette.color(QPalette::Active, QPalette::Highlight)};
    }
    return {palette.color(QPalette::Active, QPalette::WindowText), theme::newsColor(palette), {}};
}

QByteArray dyed(const QByteArray& drawing, const Inks& inks) {
    QString text = QString::fromUtf8(drawing);
    if (inks.Ground.isValid()) {
        static const QRegularExpression colour(QStringLiteral("\"#[0-9a-f]{6}\""));
        text.replace(colour, QStringLiteral("\"currentColor\""));
        text.replace(QStringLiteral("\"#fff\""), '"' + inks.Ground.name() + '"');
    }
    text.replace(QLatin1String(SvgIconEngine::AccentColor), inks.Accent.name());
    text.replace(QStringLiteral("currentColor"), inks.Text.name());
    return text.toUtf8();
}

QPixmap render(const QString& file, int side, const Inks& inks, double opacity) {
    QFile source(file);
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    if (!source.open(QIODevice::ReadOnly)) return pixmap;
    QSvgRenderer renderer(dyed(source.readAll(), inks));
    QPainter painter(&pixmap);
    painter.setOpacity(opacity);
    renderer.render(&painter, QRectF(0, 0, side, side));
    return pixmap;
}

}  // namespace

bool SvgIconEngine::isNull() {
    return !QFile::exists(file_);
}

QPixmap SvgIconEngine::drawn(int side, QIcon::Mode mode) const {
    side = std::clamp(side, 1, Largest);
    const Inks inks = inksOf(mode);
    const QString key = QStringLiteral("%1|%2|%3|%4|%5")
                            .arg(file_)
                            .arg(side)
                            .arg(static_cast<int>(mode))
                            .arg(inks.Text.rgb())
                            .arg((inks.Ground.isValid() ? inks.Ground : inks.Accent).rgb());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = render(file_, side, inks, mode == QIcon::Disabled ? DisabledOpacity : 1.0);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QPixmap SvgIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    return size.isEmpty() ? QPixmap() : drawn(std::min(size.width(), size.height()), mode);
}

// The picture's pixels are the device's, so it isn't scaled.
void SvgIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    const int side = std::min(rect.width(), rect.height());
    if (side <= 0) return;
    const double ratio = painter->device()->devicePixelRatio();
    const QPixmap pixmap = drawn(qCeil(side * ratio), mode);
    const QRectF square(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2, side,
                        side);
    painter->drawPixmap(square, pixmap, QRectF(pixmap.rect()));
}

}  // namespace talvora
