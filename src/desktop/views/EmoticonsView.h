#pragma once
// The picker of emoticons: a small frameless window with a grid of pictures, at the place where the form
// wants it, but always wholly on its screen. The arrow keys walk through the grid, page up and down turn it.

#include <array>

#include "chat/frmEmoticons.h"
#include "desktop/FormView.h"

class QScrollBar;

namespace talvora {

class EmoticonsView final : public FormView {
  public:
    EmoticonsView(frmEmoticons& form, const ViewSite& site);

    static constexpr int Columns = 6;

  protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    class CellButton;

    void bindBar();
    bool walk(const QObject* from, int key);
    void focusCell(int index);

    frmEmoticons& form_;
    std::array<CellButton*, frmEmoticons::Cells> cells_{};
    QScrollBar* bar_;
};

}  // namespace talvora
