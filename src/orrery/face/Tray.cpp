#include "orrery/face/Tray.h"

#include "desktop/Theme.h"

namespace talvora {

Tray::Tray(const Orders& orders) {
    addEntry("&Open", orders.Open);
    addEntry("&Settings...", orders.Settings);
    addEntry("&About Orrery...", orders.About);
    menu_.addSeparator();
    addEntry("&Quit", orders.Quit);
    menu_.setDefaultAction(menu_.actions().front());
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &menu_,
                     [open = orders.Open](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) open();
                     });
    icon_.setContextMenu(&menu_);
    icon_.setIcon(theme::icon(QStringLiteral("app")));
    icon_.setToolTip(QStringLiteral("Talvora"));
    icon_.show();
}

void Tray::addEntry(const char* text, const std::function<void()>& order) {
    QObject::connect(menu_.addAction(QString::fromLatin1(text)), &QAction::triggered, &menu_,
                     [order] { order(); });
}

void Tray::ShowLine(Line line) {
    if (line == line_) return;
    line_ = line;
    const bool on = line == Line::On;
    icon_.setIcon(theme::icon(on ? QStringLiteral("tray-online") : QStringLiteral("tray-offline")));
    tell();
}

void Tray::ShowUnread(int count) {
    unread_ = count;
    tell();
}

void Tray::tell() {
    QString text = QStringLiteral("Talvora");
    if (line_ != Line::Plain)
        text += line_ == Line::On ? QStringLiteral(": on line") : QStringLiteral(": off line");
    if (unread_ == 1) text += QStringLiteral(", 1 unread message");
    if (unread_ > 1) text += QStringLiteral(", %1 unread messages").arg(unread_);
    icon_.setToolTip(text);
}

}  // namespace talvora
