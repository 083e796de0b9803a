#pragma once
// The bar of the open windows behind the upper edge of the primary screen. Where there are more screens there
// is, of a bar that stands partly above the edge, a window of what can be seen only, whose content is shifted
// up: so nothing of it shows on a screen that lies above.
//
// The window belongs to no manager of windows and never has the keyboard, but for a bar that was opened by
// hand.

#include "desktop/FormView.h"
#include "desktop/views/BarSection.h"

class QVBoxLayout;

namespace talvora {

class CornerView final : public FormView {
  public:
    CornerView(frmPopup& form, const ViewSite& site);

  protected:
    void showOrHide(bool visible) override;
    void comeForward() override;
    void place() override;
    void enterEvent(QEnterEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    CornerView(frmPopup& form, const ViewSite& site, int height);
    BarSection* addSection(Label& heading, frmPopup::Box& box, frmPopup::Buttons& buttons, QVBoxLayout& rows);
    void takeKeyboard(bool takes);
    void stand();

    frmPopup& form_;
    QWidget* content_;
    BarSection* wins_;
    BarSection* notices_;
    bool isToStand_ = false;
};

}  // namespace talvora
