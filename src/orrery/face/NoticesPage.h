#pragma once
// The host's own page of the settings window about notices, and where its choice is kept.

#include <QButtonGroup>
#include <QWidget>
#include <memory>

#include "desktop/HostFace.h"
#include "orrery/face/NoticeQueue.h"
#include "platform/SettingsStore.h"

namespace talvora {

NoticePrivacy savedPrivacy(const SettingsStore& store);

class NoticesPage final : public SettingsPage {
  public:
    explicit NoticesPage(SettingsStore& store);

    QWidget& Widget() override { return *widget_; }
    QString Problem() const override { return {}; }
    void Save() override;
    void Applied() override {}

  private:
    SettingsStore& store_;
    std::unique_ptr<QWidget> widget_;
    QButtonGroup* choice_;
};

}  // namespace talvora
