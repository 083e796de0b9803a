#include "orrery/face/NetworkPage.h"

#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "desktop/Theme.h"
#include "orrery/ProfileFile.h"
#include "profile/ProfileWriter.h"

namespace talvora {

namespace {

QString valueOf(const NetworkProfile& profile, const char* key) {
    return QString::fromStdString(profileValue(profile, key));
}

QLabel* plainLabel(const QString& text) {
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

NetworkPage::NetworkPage(NetworkProfile& profile, std::string file)
    : profile_(profile),
      shown_(profile),
      file_(std::move(file)),
      widget_(std::make_unique<QWidget>()),
      server_(new QLineEdit(valueOf(profile, "ServerHost"))),
      port_(new QLineEdit(valueOf(profile, "ServerPort"))),
      tls_(new QCheckBox(QStringLiteral("Secure the connection with T&LS"))),
      caFile_(new QLineEdit(valueOf(profile, "CAFile"))),
      encoding_(new QComboBox),
      dialect_(new QLineEdit(valueOf(profile, "Dialect"))),
      channel_(new QLineEdit(valueOf(profile, "SysChannel"))),
      key_(new QLineEdit(valueOf(profile, "SysChanKey"))),
      test_(new QPushButton(QStringLiteral("&Test connection"))),
      result_(plainLabel({})) {
    tls_->setChecked(profile.TLS);
    encoding_->addItem(QStringLiteral("Unicode (utf-8)"), QStringLiteral("utf-8"));
    encoding_->addItem(QStringLiteral("Greek (cp1253)"), QStringLiteral("cp1253"));
    encoding_->setCurrentIndex(encoding_->findData(valueOf(profile, "Encoding")));
    key_->setEchoMode(QLineEdit::PasswordEchoOnEdit);
    build();
    for (QLineEdit* field : {server_, port_, caFile_, dialect_, channel_, key_}) {
        QObject::connect(field, &QLineEdit::textEdited, field, [this] { edited(); });
    }
    QObject::connect(tls_, &QCheckBox::toggled, tls_, [this] { edited(); });
    QObject::connect(encoding_, &QComboBox::currentIndexChanged, encoding_, [this] { edited(); });
    QObject::connect(test_, &QPushButton::clicked, test_, [this] { test(); });
}

NetworkPage::~NetworkPage() = default;

void NetworkPage::build() {
    auto* const form = new QFormLayout(widget_.get());
    form->setSpacing(theme::Medium);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->addRow(QStringLiteral("&Server:"), server_);
    form->addRow(QStringLiteral("&Port:"), port_);
    form->addRow(QString(), tls_);
    form->addRow(QStringLiteral("Trusted &certificates:"), chooserOfFile());
    form->addRow(QStringLiteral("&Encoding:"), encoding_);
    form->addRow(QStringLiteral("&Dialect:"), dialect_);
    form->addRow(QStringLiteral("S&ystem channel:"), channel_);
    form->addRow(QStringLiteral("Its &key:"), key_);
    form->addRow(QString(), tester());
    caFile_->setPlaceholderText(QStringLiteral("only those of this computer"));
    dialect_->setToolTip(
        QStringLiteral("plain or standard, and names of rewrites: standard +pacing -rejoin"));
    if (const std::string reason = whyNotWritable(file_); !reason.empty()) {
        form->addRow(plainLabel(QString::fromStdString(reason)));
    }
}

QWidget* NetworkPage::chooserOfFile() {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const choose = theme::iconButton(QStringLiteral("search"), QStringLiteral("Choose a file"), row);
    layout->addWidget(caFile_);
    layout->addWidget(choose);
    row->setFocusProxy(caFile_);
    caFile_->setAccessibleName(QStringLiteral("File of further trusted certificates"));
    QObject::connect(choose, &QAbstractButton::clicked, caFile_, [this] {
        // Not modal for the whole program, and the page may go while it stands.
        auto* const dialog = new QFileDialog(widget_->window(), QStringLiteral("Trusted certificates"));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(QFileDialog::ExistingFile);
        QObject::connect(dialog, &QFileDialog::fileSelected, caFile_, [this](const QString& file) {
            caFile_->setText(file);
            edited();
        });
        dialog->open();
    });
    return row;
}

QWidget* NetworkPage::tester() {
    auto* const row = new QWidget;
    auto* const layout = new QVBoxLayout(row);
    layout->setContentsMargins(0, theme::Medium, 0, 0);
    layout->addWidget(test_, 0, Qt::AlignLeft);
    layout->addWidget(result_);
    return row;
}

NetworkProfile NetworkPage::Read(QString& problem) const {
    struct Row {
        const char* key;
        const char* caption;
        QString value;
    };
    const std::array<Row, 8> rows{{
        {"ServerHost", "The server", server_->text()},
        {"ServerPort", "The port", port_->text()},
        {"TLS", "TLS", tls_->isChecked() ? QStringLiteral("yes") : QStringLiteral("no")},
        {"CAFile", "The file of trusted certificates", caFile_->text()},
        {"Encoding", "The encoding", encoding_->currentData().toString()},
        {"Dialect", "The dialect", dialect_->text()},
        {"SysChannel", "The system channel", channel_->text()},
        {"SysChanKey", "The key of the system channel", key_->text()},
    }};
    NetworkProfile profile = profile_;
    for (const Row& row : rows) {
        const auto complaint = setProfileValue(profile, row.key, row.value.trimmed().toStdString());
        if (!complaint || !problem.isEmpty()) continue;
        problem = QStringLiteral("%1 is %2.")
                      .arg(QString::fromLatin1(row.caption), QString::fromStdString(*complaint));
    }
    return profile;
}

QString NetworkPage::Problem() const {
    QString problem;
    Read(problem);
    return problem;
}

void NetworkPage::Save() {
    QString problem;
    const NetworkProfile read = Read(problem);
    std::vector<const char*> changed;
    for (const char* key :
         {"ServerHost", "ServerPort", "TLS", "CAFile", "Encoding", "Dialect", "SysChannel", "SysChanKey"}) {
        if (profileValue(read, key) != profileValue(shown_, key)) changed.push_back(key);
    }
    if (changed.empty()) return;
    // Somebody may have edited the file since.
    NetworkProfile saved = std::filesystem::exists(file_) ? readProfile(file_, true) : profile_;
    for (const char* key : changed) setProfileValue(saved, key, profileValue(read, key));
    saveProfile(file_, saved);
    profile_ = saved;
    shown_ = read;
}

void NetworkPage::edited() {
    running_.reset();
    tested({});
    Edited.raise();
}

void NetworkPage::test() {
    QString problem;
    const NetworkProfile profile = Read(problem);
    if (!problem.isEmpty()) return tested(problem);
    test_->setEnabled(false);
    result_->setText(QStringLiteral("Trying %1 ...").arg(server_->text()));
    running_ =
        std::make_unique<ConnectionTest>(profile, [this](bool, const QString& words) { tested(words); });
}

void NetworkPage::tested(const QString& words) {
    test_->setEnabled(true);
    result_->setText(words);
    result_->setAccessibleName(words);
}

}  // namespace talvora
