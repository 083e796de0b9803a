#pragma once
// What stands in a list or tree while it has nothing to show.

#include <QPainter>
#include <QWidget>

namespace talvora {

// In the viewport's own paint event, on top of what it has painted.
inline void paintEmptyText(QWidget& viewport, const QString& text) {
    constexpr int margin = 12;  // pixels
    QPainter painter(&viewport);
    painter.setPen(viewport.palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport.rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignTop | Qt::AlignHCenter | Qt::TextWordWrap, text);
}

}  // namespace talvora
