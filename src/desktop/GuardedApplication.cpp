#include "desktop/GuardedApplication.h"

#include <QEvent>

namespace talvora {

namespace {

bool isOfHands(const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::TouchEnd:
        case QEvent::Shortcut:
            return true;
        case QEvent::Close:
            return event.spontaneous();
        default:
            return false;
    }
}

// What the loop brings by itself, also a loop that a question of the user's runs.
bool isOfTheLoop(const QEvent& event) {
    return event.type() == QEvent::SockAct || event.type() == QEvent::Timer;
}

}  // namespace

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
    if (guard_ == nullptr) return QApplication::notify(receiver, event);
    const bool before = userActs_;
    userActs_ = (before || isOfHands(*event)) && !isOfTheLoop(*event);
    bool handled = true;
    guard_->run("Event", [&] { handled = QApplication::notify(receiver, event); });
    userActs_ = before;
    return handled;
}

}  // namespace talvora
