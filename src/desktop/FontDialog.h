#pragma once
// The box to choose a font in: the toolkit's, and beside it the colour, which the toolkit's lacks.

#include <QDialog>

#include "platform/Questions.h"

class QComboBox;
class QFontDialog;

namespace talvora {

class FontDialog final : public QDialog {
  public:
    FontDialog(const FontBox& question, QWidget* parent);

    FontChoice Choice() const;

  private:
    void fillColors(Colour now);

    FontChoice preset_;
    QString family_;  // that stands for the preset's
    QFontDialog* font_;
    QComboBox* colors_;
};

}  // namespace talvora
