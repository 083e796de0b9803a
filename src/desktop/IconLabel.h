#pragma once
// Shows an icon, drawn anew when the palette or the resolution changes.

#include <QIcon>
#include <QWidget>

namespace talvora {

class IconLabel final : public QWidget {
  public:
    explicit IconLabel(int side, QWidget* parent = nullptr) : QWidget(parent) { setFixedSize(side, side); }

    void setIcon(const QIcon& icon) {
        icon_ = icon;
        update();
    }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QIcon icon_;
};

}  // namespace talvora
