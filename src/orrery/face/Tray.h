#pragma once
// The icon in the tray and its menu. Where there is no tray nothing is seen of it; one that appears later
// gets the icon.

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

namespace talvora {

class Tray {
  public:
    struct Orders {
        std::function<void()> Open, Settings, About, Quit;
    };
    enum class Line { Plain, On, Off };

    explicit Tray(const Orders& orders);

    static bool Available() { return QSystemTrayIcon::isSystemTrayAvailable(); }
    void ShowLine(Line line);
    void ShowUnread(int count);
    QString ToolTip() const { return icon_.toolTip(); }
    const QMenu& Menu() const { return menu_; }

  private:
    void tell();
    void addEntry(const char* text, const std::function<void()>& order);

    QMenu menu_;
    QSystemTrayIcon icon_;
    Line line_ = Line::Plain;
    int unread_ = 0;
};

}  // namespace talvora
