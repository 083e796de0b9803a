#pragma once
// Text between the component (code page 1253) and the toolkit (UTF-16). One byte is one UTF-16 unit, so
// offsets are the same on both sides.

#include <QString>
#include <string>
#include <string_view>

namespace talvora {

QString toQString(std::string_view cp1253);
// One line of at most so many letters, for titles and rows: control characters become blanks.
QString oneLine(std::string_view cp1253, std::size_t longest);
// For a button or a menu, which take "&" and a tab for signs of their own.
QString caption(std::string_view cp1253);
// What has no place in the code page becomes the nearest text.
std::string fromQString(const QString& text);

}  // namespace talvora
