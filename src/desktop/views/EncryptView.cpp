#include "desktop/views/EncryptView.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/FormView.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

EncryptView::EncryptView(plg_Encrypt& plugin, QWidget* parent) : QWidget(parent), plugin_(plugin) {
    auto* user = new QLabel(this);
    user->setMinimumWidth(1);
    attach(on_, plugin_.Label4, *user);
    auto* userLine = new QHBoxLayout;
    userLine->addWidget(new QLabel(tr("User:"), this));
    userLine->addWidget(user, 1);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(theme::Small);
    rows->addLayout(userLine);
    rows->addLayout(makeKey());
    rows->addWidget(makeNote(plugin_.Problem));
    rows->addWidget(makeSwitch());
    rows->addWidget(makeNote(plugin_.Honest));
    rows->addStretch(1);
    follow(on_, plugin_.EncryptOn, [this](bool on) { markWindow(on); });
}

QBoxLayout* EncryptView::makeKey() {
    auto* rows = new QVBoxLayout;
    rows->setSpacing(theme::Small);
    auto* caption = new QLabel(tr("Encryption &key:"), this);
    auto* key = new QLineEdit(this);
    key->setMinimumWidth(1);
    key->setAccessibleName(tr("Encryption key"));
    attach(on_, plugin_.Text1, *key);
    caption->setBuddy(key);
    auto* show = new QToolButton(this);
    show->setAutoRaise(true);
    show->setFont(theme::smallFont());
    follow(on_, plugin_.ShowKey.Caption, [show](const std::string& text) { show->setText(toQString(text)); });
    connect(show, &QToolButton::clicked, this, [this] { plugin_.ShowKey.Click.raise(); });
    follow(on_, plugin_.KeyShown,
           [key](bool shown) { key->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password); });
    rows->addWidget(caption);
    rows->addWidget(key);
    rows->addWidget(show, 0, Qt::AlignRight);
    return rows;
}

QWidget* EncryptView::makeSwitch() {
    auto* button = new QPushButton(this);
    button->setIcon(theme::icon(QStringLiteral("lock")));
    follow(on_, plugin_.Label1.Caption,
           [button](const std::string& text) { button->setText(toQString(text)); });
    attachVisible(on_, plugin_.Label1.Visible, *button);
    connect(button, &QPushButton::clicked, this, [this] { plugin_.Label1.Click.raise(); });
    return button;
}

QWidget* EncryptView::makeNote(Label& model) {
    auto* note = new QLabel(this);
    note->setWordWrap(true);
    note->setFont(theme::smallFont());
    attach(on_, model, *note);
    follow(on_, model.Caption, [note](const std::string& text) { note->setHidden(text.empty()); });
    return note;
}

void EncryptView::markWindow(bool on) {
    auto* window = dynamic_cast<FormView*>(this->window());
    if (window == nullptr) return;
    if (on) {
        window->Mark(tr("Encrypted"), theme::icon(QStringLiteral("private-locked")));
    } else {
        window->Unmark();
    }
}

}  // namespace talvora
