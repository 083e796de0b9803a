#pragma once
// The buttons of the windows of file transfers: each by its keys, which its tool tip tells.

#include <QKeySequence>
#include <QPushButton>

#include "desktop/Binding.h"

namespace talvora {

inline QPushButton* transferButton(Subscriptions& on, CommandButton& model, const QKeySequence& keys,
                                   QWidget* parent) {
    auto* button = new QPushButton(parent);
    button->setAutoDefault(true);
    attach(on, model, *button);
    if (keys.isEmpty()) return button;
    button->setShortcut(keys);
    button->setToolTip(keys.toString(QKeySequence::NativeText));
    return button;
}

}  // namespace talvora
