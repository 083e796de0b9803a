#pragma once
// Which of the machine's fonts stand for the fonts that documents name. All of them hold Greek.

#include <QStringList>

namespace talvora {

// The named family if the machine has it, then those that resemble it, the best first.
QStringList fontFamiliesFor(const QString& name);

}  // namespace talvora
