#include "desktop/QuestionBox.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <vector>

#include "desktop/GuardedApplication.h"
#include "desktop/IconLabel.h"
#include "desktop/QtText.h"
#include "desktop/TextNote.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

struct Choice {
    Answer What;
    QDialogButtonBox::StandardButton Button;
};

constexpr Choice OkButton{Answer::Ok, QDialogButtonBox::Ok};
constexpr Choice CancelButton{Answer::Cancel, QDialogButtonBox::Cancel};
constexpr Choice AbortButton{Answer::Abort, QDialogButtonBox::Abort};
constexpr Choice RetryButton{Answer::Retry, QDialogButtonBox::Retry};
constexpr Choice IgnoreButton{Answer::Ignore, QDialogButtonBox::Ignore};
constexpr Choice YesButton{Answer::Yes, QDialogButtonBox::Yes};
constexpr Choice NoButton{Answer::No, QDialogButtonBox::No};

// The first is what Return means; Escape and the close box mean the least that can be answered.
std::vector<Choice> choicesOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok:
            return {OkButton};
        case Buttons::OkCancel:
            return {OkButton, CancelButton};
        case Buttons::AbortRetryIgnore:
            return {AbortButton, RetryButton, IgnoreButton};
        case Buttons::YesNoCancel:
            return {YesButton, NoButton, CancelButton};
        case Buttons::YesNo:
            return {YesButton, NoButton};
        case Buttons::RetryCancel:
            return {RetryButton, CancelButton};
    }
    return {OkButton};
}

Answer leastOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
        case Buttons::YesNo:
            return Answer::No;
        default:
            return Answer::Cancel;
    }
}

// A warning asks before something is lost: there Return must not be the way to lose it.
Answer standardOf(const MessageBox& box) {
    const bool warns = box.Icon == MessageIcon::Exclamation || box.Icon == MessageIcon::Critical;
    return warns ? leastOf(box.Choices) : choicesOf(box.Choices).front().What;
}

QString iconOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Critical:
            return QStringLiteral("error");
        case MessageIcon::Question:
            return QStringLiteral("question");
        case MessageIcon::Exclamation:
            return QStringLiteral("warning");
        case MessageIcon::Information:
            return QStringLiteral("info");
        case MessageIcon::None:
            break;
    }
    return {};
}

}  // namespace

QuestionBox::QuestionBox(const std::string& title, const std::string& text, QWidget* parent)
    : QDialog(parent), row_(new QHBoxLayout), column_(new QVBoxLayout), rows_(new QVBoxLayout(this)) {
    setWindowTitle(toQString(title));
    setWindowIcon(theme::icon(QStringLiteral("app")));
    setAccessibleDescription(toQString(std::string_view(text).substr(0, TextNote::Longest)));
    auto* note = new TextNote(this);
    note->setNote(toQString(text));
    note->setAccessibleName(windowTitle());
    column_->setSpacing(theme::Medium);
    column_->addWidget(note);
    row_->setSpacing(theme::Large);
    row_->addLayout(column_, 1);
    row_->setAlignment(column_, Qt::AlignVCenter);
    rows_->setContentsMargins(2 * theme::Medium, 2 * theme::Medium, 2 * theme::Medium, theme::Large);
    rows_->setSpacing(2 * theme::Medium);
    rows_->addLayout(row_);
}

QuestionBox::QuestionBox(const MessageBox& question, QWidget* parent)
    : QuestionBox(question.Title, question.Text, parent) {
    outcome_ = leastOf(question.Choices);
    if (question.Icon != MessageIcon::None) {
        auto* icon = new IconLabel(theme::BoxIcon, this);
        icon->setIcon(theme::icon(iconOf(question.Icon)));
        row_->insertWidget(0, icon, 0, Qt::AlignTop);
    }
    suppressed_ = new QLabel(this);
    suppressed_->setFont(theme::smallFont());
    suppressed_->setForegroundRole(QPalette::PlaceholderText);
    column_->addWidget(suppressed_);
    showSuppressed(question.Suppressed);
    addButtons(question.Choices, standardOf(question));
}

QuestionBox::QuestionBox(const InputBox& question, QWidget* parent)
    : QuestionBox(question.Title, question.Prompt, parent) {
    line_ = new QLineEdit(toQString(question.Default), this);
    line_->setAccessibleName(toQString(question.Prompt));
    line_->selectAll();
    column_->addWidget(line_);
    addButtons(Buttons::OkCancel, Answer::Ok);
    line_->setFocus();
}

void QuestionBox::addButtons(Buttons choices, Answer standard) {
    auto* buttons = new QDialogButtonBox(this);
    for (const Choice& choice : choicesOf(choices)) {
        QPushButton* button = buttons->addButton(choice.Button);
        const Answer answer = choice.What;
        connect(button, &QPushButton::clicked, this, [this, answer] { conclude(answer); });
        button->setAutoDefault(true);
        if (answer != standard) continue;
        button->setDefault(true);
        button->setFocus();
    }
    rows_->addWidget(buttons);
}

QString QuestionBox::Typed() const {
    return line_ != nullptr ? line_->text() : QString();
}

void QuestionBox::showSuppressed(int count) {
    if (suppressed_ == nullptr) return;
    suppressed_->setText(tr("and %1 more like this").arg(count));
    suppressed_->setVisible(count > 0);
}

void QuestionBox::conclude(Answer answer) {
    outcome_ = answer;
    hide();
}

// A box that nobody can see can't be answered any more, whatever hid it.
void QuestionBox::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    if (event->spontaneous()) return;
    Q_EMIT finished(0);
}

void QuestionBox::wait(QDialog& box) {
    QEventLoop loop;
    connect(&box, &QDialog::finished, &loop, &QEventLoop::quit);
    connect(&box, &QObject::destroyed, &loop, &QEventLoop::quit);
    // A question that comes by itself doesn't take what the user is typing elsewhere for its answer.
    const auto* application = dynamic_cast<GuardedApplication*>(QCoreApplication::instance());
    const bool asked = application == nullptr || application->UserActs();
    box.setAttribute(Qt::WA_ShowWithoutActivating, !asked);
    box.show();
    box.raise();
    if (asked) {
        box.activateWindow();
    } else {
        QApplication::alert(&box);
    }
    loop.exec(QEventLoop::DialogExec);
}

}  // namespace talvora
