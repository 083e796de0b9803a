#include "desktop/FontMap.h"

#include <QFontDatabase>

namespace talvora {

namespace {

const QStringList& replacements(const QString& name) {
    static const QStringList sans{"DejaVu Sans", "Noto Sans", "Liberation Sans", "FreeSans"};
    static const QStringList serif{"Liberation Serif", "DejaVu Serif", "Noto Serif", "FreeSerif"};
    static const QStringList mono{"DejaVu Sans Mono", "Liberation Mono", "Noto Sans Mono", "FreeMono"};
    const auto holds = [&](const char* part) {
        return name.contains(QLatin1String(part), Qt::CaseInsensitive);
    };
    if (holds("courier") || holds("mono") || holds("console") || holds("fixed")) return mono;
    const bool isSans = holds("sans");
    if (!isSans && (holds("times") || holds("serif") || holds("georgia") || holds("garamond"))) return serif;
    return sans;
}

}  // namespace

QStringList fontFamiliesFor(const QString& name) {
    QStringList families;
    if (!name.isEmpty() && QFontDatabase::hasFamily(name)) families << name;
    for (const QString& family : replacements(name)) {
        if (QFontDatabase::hasFamily(family)) families << family;
    }
    if (families.isEmpty()) families << name;
    return families;
}

}  // namespace talvora
