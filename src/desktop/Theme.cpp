#include "desktop/Theme.h"

#include <QApplication>
#include <QDir>
#include <QTextDocument>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "desktop/SvgIconEngine.h"

// Must not stand in a namespace.
static void openIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace talvora::theme {

namespace {

constexpr double ReadableContrast = 3.0;  // contrast of large text and of graphics

QString folder() {
    static const bool opened = (openIcons(), true);
    Q_UNUSED(opened);
    return QStringLiteral(":/talvora/icons/");
}

QFont scaledFont(double factor) {
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pixelSize() * factor))));
    }
    return font;
}

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& from, const QColor& to, double part) {
    const auto mix = [part](float a, float b) { return static_cast<float>(a + (b - a) * part); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

}  // namespace

QFont titleFont() {
    QFont font = scaledFont(1.25);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont smallFont() {
    return scaledFont(0.9);
}

QColor newsColor(const QPalette& palette) {
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    QColor colour = accent;
    for (double part = 0.1; part < 1 && contrast(colour, ground) < ReadableContrast; part += 0.1) {
        colour = mixed(accent, text, part);
    }
    return colour;
}

QColor pageColor() {
    return Qt::white;
}

QColor pageTextColor() {
    return Qt::black;
}

QIcon icon(const QString& name) {
    const QString file = folder() + name + QStringLiteral(".svg");
    return name.isEmpty() || !QFile::exists(file) ? QIcon() : QIcon(new SvgIconEngine(file));
}

QStringList iconNames() {
    QStringList names = QDir(folder()).entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    for (QString& name : names) name.chop(4);
    return names;
}

QToolButton* iconButton(const QString& name, const QString& text, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setIcon(icon(name));
    button->setIconSize({ButtonIcon, ButtonIcon});
    button->setToolTip(text);
    button->setAccessibleName(text);
    return button;
}

QString plainToolTip(const QString& text) {
    constexpr int longestTip = 300;
    const QString tip = text.left(longestTip);
    return Qt::mightBeRichText(tip) ? QStringLiteral("<span>%1</span>").arg(tip.toHtmlEscaped()) : tip;
}

}  // namespace talvora::theme
