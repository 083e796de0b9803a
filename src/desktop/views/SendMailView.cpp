#include "desktop/views/SendMailView.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStringListModel>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize ComposerSize{600, 460};

QIcon toolPicture(int index) {
    switch (index) {
        case ComposerButton::Send:
            return theme::icon(QStringLiteral("send"));
        case ComposerButton::Bold:
            return theme::icon(QStringLiteral("bold"));
        case ComposerButton::Italic:
            return theme::icon(QStringLiteral("italic"));
        case ComposerButton::Underline:
            return theme::icon(QStringLiteral("underline"));
        case ComposerButton::Font:
            return theme::icon(QStringLiteral("font"));
        case ComposerButton::Priority:
            return theme::icon(QStringLiteral("urgent"));
        case ComposerButton::RTF:
            return theme::icon(QStringLiteral("rich"));
        case ComposerButton::Expiration:
            return theme::icon(QStringLiteral("expiry"));
        case ComposerButton::Emoticons:
            return theme::icon(QStringLiteral("smiley"));
        default:
            return {};
    }
}

QKeySequence toolKeys(int index) {
    switch (index) {
        case ComposerButton::Send:
            return QKeySequence(Qt::CTRL | Qt::Key_Return);
        case ComposerButton::Bold:
            return QKeySequence(QKeySequence::Bold);
        case ComposerButton::Italic:
            return QKeySequence(QKeySequence::Italic);
        case ComposerButton::Underline:
            return QKeySequence(QKeySequence::Underline);
        default:
            return {};
    }
}

}  // namespace

SendMailView::SendMailView(frmSendMail& form, const ViewSite& site)
    : FormView(form, site, "Composer", ComposerSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("mail-new")));
    RichTextView* text = addRichText(form_.RichTextBox1);
    text->setAccessibleName(tr("Text"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Small, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addWidget(makeTools());
    rows->addLayout(makeHead());
    rows->addWidget(text, 1);
    rows->addLayout(makeFoot());
    setTabOrder(to_, subject_);
    setTabOrder(subject_, text);
    on_ += form_.Shown.connect([this, text] {
        QWidget* first = to_->text().isEmpty() ? to_ : subject_->text().isEmpty() ? subject_ : nullptr;
        (first != nullptr ? first : text)->setFocus();
    });
}

// ---- Parts

QToolBar* SendMailView::makeTools() {
    auto* tools = new QToolBar(this);
    tools->setIconSize({theme::ButtonIcon, theme::ButtonIcon});
    attach(on_, form_.Toolbar1, *tools, toolPicture);
    const QList<QAction*> actions = tools->actions();
    for (int index = 1; index <= form_.Toolbar1.Count(); ++index) {
        QAction* action = actions[index - 1];
        if (const QKeySequence keys = toolKeys(index); !keys.isEmpty()) {
            action->setShortcut(keys);
            action->setToolTip(
                QStringLiteral("%1 (%2)").arg(action->toolTip(), keys.toString(QKeySequence::NativeText)));
        }
        auto* button = qobject_cast<QToolButton*>(tools->widgetForAction(action));
        if (index == ComposerButton::Send) button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    return tools;
}

QFormLayout* SendMailView::makeHead() {
    to_ = new QLineEdit(this);
    to_->setAccessibleName(tr("Send To"));
    to_->setPlaceholderText(tr("Nicks, with \";\" between them"));
    attach(on_, form_.Text1, *to_);
    names_ = new QStringListModel(this);
    completer_ = new QCompleter(names_, this);
    completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_->setWidget(to_);
    connect(completer_, qOverload<const QString&>(&QCompleter::activated), this,
            [this](const QString& name) { form_.Complete(fromQString(name)); });
    on_ +=
        form_.Suggestions.Changed.connect([this](const std::vector<std::string>& names) { suggest(names); });

    QToolButton* browse = theme::iconButton(QStringLiteral("person"), tr("Browse user..."), this);
    attach(on_, form_.Image1, *browse);
    auto* recipients = new QHBoxLayout;
    recipients->setSpacing(theme::Small);
    recipients->addWidget(to_, 1);
    recipients->addWidget(browse);
    subject_ = new QLineEdit(this);
    subject_->setAccessibleName(tr("Subject"));
    attach(on_, form_.Text2, *subject_);

    auto* head = new QFormLayout;
    head->setSpacing(theme::Small);
    head->addRow(tr("Send To:"), recipients);
    head->addRow(tr("Subject:"), subject_);
    return head;
}

QBoxLayout* SendMailView::makeFoot() {
    auto* row = new QHBoxLayout;
    auto* estimate = new QLabel(this);
    estimate->setFont(theme::smallFont());
    estimate->setMinimumWidth(1);
    attach(on_, form_.lblEstimate, *estimate);
    row->addWidget(estimate, 1);
    auto* discard = new QAction(theme::icon(QStringLiteral("erase")), {}, this);
    attach(on_, form_.mnuDiscard, *discard);
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setDefaultAction(discard);
    discard->setToolTip(tr("Close the window and keep no draft"));
    row->addWidget(button);
    return row;
}

// Under what is typed; a name that is chosen goes to the form, which knows where it belongs.
void SendMailView::suggest(const std::vector<std::string>& names) {
    QStringList texts;
    for (const std::string& name : names) texts += toQString(name);
    names_->setStringList(texts);
    if (texts.isEmpty() || !to_->hasFocus()) {
        completer_->popup()->hide();
    } else {
        completer_->complete();
    }
}

}  // namespace talvora
