#include "desktop/IconLabel.h"

#include <QPainter>

namespace talvora {

void IconLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    icon_.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

}  // namespace talvora
