#pragma once
// Text between the component (code page 1253) and the toolkit (UTF-16). One byte is one UTF-16 unit, so
// offsets are the same on both sides.

#include <QString>
#include <string>
#include <string_view>

namespace talvora {

QString toQString(std::string_view cp1253);
// What has no place in the code page becomes the nearest text.
std::string fromQString(const QString& text);

}  // namespace talvora
