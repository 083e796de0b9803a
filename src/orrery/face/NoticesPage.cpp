#include "orrery/face/NoticesPage.h"

#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>
#include <string>

#include "desktop/Theme.h"

namespace talvora {

namespace {

// The host's own settings stand beside the component's, under its own name.
constexpr std::string_view HostName = "Orrery";
constexpr std::string_view NoticesSection = "Notices";
constexpr std::string_view PrivacyKey = "Privacy";

}  // namespace

NoticePrivacy savedPrivacy(const SettingsStore& store) {
    const std::string saved = store.GetSetting(HostName, NoticesSection, PrivacyKey, "0");
    if (saved == "1") return NoticePrivacy::NameOnly;
    if (saved == "2") return NoticePrivacy::Neither;
    return NoticePrivacy::NameAndText;
}

NoticesPage::NoticesPage(SettingsStore& store)
    : store_(store), widget_(std::make_unique<QWidget>()), choice_(new QButtonGroup(widget_.get())) {
    auto* const layout = new QVBoxLayout(widget_.get());
    layout->setSpacing(theme::Medium);
    layout->addWidget(new QLabel(QStringLiteral("A notice of a new message shows")));
    const QString captions[] = {QStringLiteral("who has written, and the &text"),
                                QStringLiteral("&who has written"), QStringLiteral("&neither")};
    int number = 0;
    for (const QString& caption : captions) {
        auto* const button = new QRadioButton(caption);
        layout->addWidget(button);
        choice_->addButton(button, number++);
    }
    layout->addStretch();
    choice_->button(static_cast<int>(savedPrivacy(store)))->setChecked(true);
    QObject::connect(choice_, &QButtonGroup::idClicked, choice_, [this] { Edited.raise(); });
}

void NoticesPage::Save() {
    store_.SaveSetting(HostName, NoticesSection, PrivacyKey, std::to_string(choice_->checkedId()));
}

}  // namespace talvora
