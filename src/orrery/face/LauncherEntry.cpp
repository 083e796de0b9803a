#include "orrery/face/LauncherEntry.h"

#include <QDBusMessage>
#include <QVariantMap>
#include <algorithm>

namespace talvora {

void LauncherEntry::Show(const Form& form, std::optional<double> done) {
    if (done) {
        underWay_[&form] = std::clamp(*done, 0.0, 1.0);
    } else if (underWay_.erase(&form) == 0) {
        return;
    }
    double sum = 0;
    for (const auto& [who, share] : underWay_) sum += share;
    const auto count = static_cast<double>(underWay_.size());
    const int hundredths = underWay_.empty() ? Nothing : static_cast<int>(sum / count * 100);
    if (hundredths != told_) tell(hundredths);
}

void LauncherEntry::tell(int hundredths) {
    told_ = hundredths;
    if (!bus_.isConnected()) return;
    QDBusMessage update = QDBusMessage::createSignal(QStringLiteral("/com/canonical/unity/launcherentry/1"),
                                                     QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                                     QStringLiteral("Update"));
    update << QStringLiteral("application://talvora.desktop")
           << QVariantMap{{QStringLiteral("progress"), std::max(hundredths, 0) / 100.0},
                          {QStringLiteral("progress-visible"), hundredths != Nothing}};
    bus_.send(update);
}

}  // namespace talvora
