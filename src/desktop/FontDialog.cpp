#include "desktop/FontDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QPixmap>
#include <QVBoxLayout>
#include <utility>

#include "desktop/FontMap.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

// The sixteen colours that have names, as documents write them.
constexpr std::pair<const char*, Colour> named[] = {
    {"Automatic", 0x000000}, {"Maroon", 0x000080},  {"Green", 0x008000}, {"Olive", 0x008080},
    {"Navy", 0x800000},      {"Purple", 0x800080},  {"Teal", 0x808000},  {"Gray", 0x808080},
    {"Silver", 0xC0C0C0},    {"Red", 0x0000FF},     {"Lime", 0x00FF00},  {"Yellow", 0x00FFFF},
    {"Blue", 0xFF0000},      {"Fuchsia", 0xFF00FF}, {"Aqua", 0xFFFF00},  {"White", 0xFFFFFF},
};

QIcon patch(Colour colour) {
    QPixmap square(theme::SmallIcon, theme::SmallIcon);
    square.fill(QColor(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                       static_cast<int>(colour >> 16 & 0xFF)));
    return square;
}

}  // namespace

FontDialog::FontDialog(const FontBox& question, QWidget* parent)
    : QDialog(parent), preset_(question.Preset), font_(new QFontDialog(this)), colors_(new QComboBox(this)) {
    setWindowTitle(toQString(question.Title));
    setWindowIcon(theme::icon(QStringLiteral("app")));
    font_->setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
    font_->setWindowFlags(Qt::Widget);
    family_ = fontFamiliesFor(toQString(preset_.Name)).first();
    QFont shown(family_);
    if (preset_.Size > 0) shown.setPointSizeF(preset_.Size);
    shown.setBold(preset_.Bold);
    shown.setItalic(preset_.Italic);
    shown.setUnderline(preset_.Underline);
    shown.setStrikeOut(preset_.StrikeThru);
    font_->setCurrentFont(shown);
    fillColors(preset_.Color);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // Return and Escape within the toolkit's part mean the whole.
    connect(font_, &QDialog::accepted, this, &QDialog::accept);
    connect(font_, &QDialog::rejected, this, &QDialog::reject);

    auto* color = new QFormLayout;
    color->addRow(tr("&Colour:"), colors_);
    auto* rows = new QVBoxLayout(this);
    rows->addWidget(font_, 1);
    rows->addLayout(color);
    rows->addWidget(buttons);
}

void FontDialog::fillColors(Colour now) {
    for (const auto& [name, colour] : named) colors_->addItem(patch(colour), tr(name), colour);
    if (colors_->findData(now) < 0) colors_->addItem(patch(now), tr("As it is"), now);
    colors_->setCurrentIndex(colors_->findData(now));
}

FontChoice FontDialog::Choice() const {
    const QFont font = font_->currentFont();
    FontChoice choice;
    // A family that stands for one that this desktop lacks is not taken for it.
    choice.Name = font.family() == family_ ? preset_.Name : fromQString(font.family());
    choice.Size = font.pointSizeF();
    choice.Bold = font.bold();
    choice.Italic = font.italic();
    choice.Underline = font.underline();
    choice.StrikeThru = font.strikeOut();
    choice.Color = colors_->currentData().toUInt();
    return choice;
}

}  // namespace talvora
