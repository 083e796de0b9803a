#include "desktop/QtText.h"

#include <array>

#include "platform/CodePage1253.h"

namespace talvora {

namespace {

std::array<char16_t, 256> makeTable() {
    std::array<char16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = codePointOf(static_cast<unsigned char>(i));
    return table;
}

}  // namespace

QString toQString(std::string_view cp1253) {
    static const std::array<char16_t, 256> table = makeTable();
    QString text(static_cast<qsizetype>(cp1253.size()), Qt::Uninitialized);
    QChar* to = text.data();
    for (const char c : cp1253) *to++ = QChar(table[static_cast<unsigned char>(c)]);
    return text;
}

std::string fromQString(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    return fromUtf8({utf8.constData(), static_cast<std::size_t>(utf8.size())});
}

QString oneLine(std::string_view cp1253, std::size_t longest) {
    QString line = toQString(cp1253.substr(0, longest));
    for (QChar& letter : line) {
        if (letter.category() == QChar::Other_Control) letter = QLatin1Char(' ');
    }
    return line;
}

QString caption(std::string_view cp1253) {
    constexpr std::size_t longest = 200;
    return oneLine(cp1253, longest).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

}  // namespace talvora
