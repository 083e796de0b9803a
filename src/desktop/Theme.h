#pragma once
// How the windows look: one place for spacing, type, colours and icons. All of it follows the desktop's font
// and palette; a switch between light and dark is followed by the next paint.

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QString>
#include <QStringList>

class QToolButton;
class QWidget;

namespace talvora::theme {

// Pixels between things that belong together, between others, and at the edge of a window.
inline constexpr int Small = 4;
inline constexpr int Medium = 8;
inline constexpr int Large = 12;
// The sides of an icon in a row or a button, in a tool bar, and beside a question.
inline constexpr int SmallIcon = 16;
inline constexpr int ButtonIcon = 20;
inline constexpr int BoxIcon = 40;

QFont titleFont();
QFont smallFont();

// What is new stands out in the desktop's own accent, made readable on the background of lists.
QColor newsColor(const QPalette& palette);
// Documents bring colours of their own, which are made for paper.
QColor pageColor();
QColor pageTextColor();

// An icon of our family, drawn when it is shown, at the size and resolution asked for. Null for a name that
// the family lacks.
QIcon icon(const QString& name);
QStringList iconNames();

// A button that shows only a picture: `text` is its tool tip and what a screen reader says.
QToolButton* iconButton(const QString& name, const QString& text, QWidget* parent = nullptr);

// For texts of others: a tool tip that never reads them as mark-up.
QString plainToolTip(const QString& text);

}  // namespace talvora::theme
