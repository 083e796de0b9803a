#include "orrery/face/Welcome.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "common/ComponentSettings.h"
#include "common/Identity.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "orrery/ProfileFile.h"
#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "profile/ProfileWriter.h"

namespace talvora {

namespace {

constexpr int LongestNick = 31;
constexpr int LongestPath = 120;

bool isStored(const SettingsStore& store, std::string_view key) {
    // No value that anybody would save.
    constexpr std::string_view nothing("\0\1", 2);
    return store.GetSetting(ProductName, Section::Settings, key, nothing) != nothing;
}

// As it is saved: one line, in the code page.
std::string entered(const QLineEdit& field) {
    return OneLine(fromQString(field.text().trimmed()));
}

}  // namespace

bool isFirstStart(const SettingsStore& store) {
    return !isStored(store, "Nickname") && !isStored(store, "RealName");
}

Welcome::Welcome(SettingsStore& store, NetworkProfile& profile, std::string profileFile)
    : store_(store),
      profile_(profile),
      profileFile_(std::move(profileFile)),
      nick_(new QLineEdit),
      path_(new QLineEdit),
      server_(new QLineEdit(toQString(profile.ServerHost))),
      port_(new QLineEdit(QString::number(profile.ServerPort))),
      problem_(new QLabel) {
    setWindowTitle(QStringLiteral("Welcome to Talvora"));
    setWindowIcon(theme::icon(QStringLiteral("app")));
    nick_->setObjectName(QStringLiteral("nick"));
    path_->setObjectName(QStringLiteral("path"));
    server_->setObjectName(QStringLiteral("server"));
    port_->setObjectName(QStringLiteral("port"));
    nick_->setMaxLength(LongestNick);
    path_->setMaxLength(LongestPath);
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    build();
}

void Welcome::build() {
    auto* const example = new QLabel(QStringLiteral("(ex. Work.Thessaloniki.Pylea)"));
    example->setFont(theme::smallFont());
    auto* const form = new QFormLayout;
    form->setSpacing(theme::Medium);
    form->addRow(QStringLiteral("&Nick:"), nick_);
    form->addRow(QStringLiteral("&Location path:"), path_);
    form->addRow(QString(), example);
    form->addRow(QStringLiteral("&Server:"), server_);
    form->addRow(QStringLiteral("&Port:"), port_);
    path_->setAccessibleDescription(example->text());

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Start"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const title = new QLabel(QStringLiteral("Who are you, and where?"));
    title->setFont(theme::titleFont());
    auto* const all = new QVBoxLayout(this);
    all->setSpacing(theme::Large);
    all->addWidget(title);
    all->addLayout(form);
    all->addWidget(problem_);
    all->addWidget(buttons);
    setMinimumWidth(420);
}

QString Welcome::problem(NetworkProfile& profile) const {
    for (const std::string& wrong : {NickProblem(entered(*nick_)), PathProblem(entered(*path_))}) {
        if (!wrong.empty()) return toQString(wrong);
    }
    const auto set = [&](const char* key, const QLineEdit& field) -> QString {
        const auto complaint = setProfileValue(profile, key, field.text().trimmed().toStdString());
        return complaint ? QString::fromStdString(*complaint) : QString();
    };
    if (const QString wrong = set("ServerHost", *server_); !wrong.isEmpty())
        return QStringLiteral("The server is %1.").arg(wrong);
    if (const QString wrong = set("ServerPort", *port_); !wrong.isEmpty())
        return QStringLiteral("The port is %1.").arg(wrong);
    return {};
}

void Welcome::accept() {
    NetworkProfile profile = profile_;
    const QString wrong = problem(profile);
    problem_->setText(wrong);
    if (!wrong.isEmpty()) return;
    try {
        save(profile);
        QDialog::accept();
    } catch (const RuntimeError& error) {
        problem_->setText(toQString(error.Description));
    } catch (const std::exception& error) {
        problem_->setText(QString::fromUtf8(error.what()));
    }
}

// Who the user is comes last: as long as that is not said, the next start asks again.
void Welcome::save(const NetworkProfile& profile) {
    if (profile.ServerHost != profile_.ServerHost || profile.ServerPort != profile_.ServerPort) {
        saveProfile(profileFile_, profile);
        profile_ = profile;
    }
    ComponentSettings settings(store_);
    settings.Save(Section::Settings, "RealName", entered(*path_));
    settings.Save(Section::Settings, "Nickname", entered(*nick_));
}

}  // namespace talvora
