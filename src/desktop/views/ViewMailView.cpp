#include "desktop/views/ViewMailView.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/IconLabel.h"
#include "desktop/QtText.h"
#include "desktop/RichPrint.h"
#include "desktop/RichTextView.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"
#include "mail/MailPanel.h"

namespace talvora {

namespace {

constexpr QSize MailSize{560, 440};
constexpr std::size_t LongestJob = 80;  // letters of a title

// What stands in the head is read, marked and copied, and looks like text.
QLineEdit* headLine(Subscriptions& on, TextBox& model, QWidget* parent) {
    auto* line = new QLineEdit(parent);
    attach(on, model, *line);
    line->setFrame(false);
    line->setCursor(Qt::IBeamCursor);
    QPalette palette = line->palette();
    palette.setBrush(QPalette::Base, Qt::transparent);
    line->setPalette(palette);
    return line;
}

}  // namespace

ViewMailView::ViewMailView(frmViewMail& form, const ViewSite& site)
    : FormView(form, site, "Mail", MailSize), form_(form) {
    follow(on_, form_.Icon, [this](int icon) {
        const bool read = icon == frmViewMail::ReadIcon;
        setWindowIcon(pictureOf(Pictures::Mails, read ? MailPicture::Read : MailPicture::Unread));
    });
    RichTextView* text = addRichText(form_.RichTextBox1);
    text->setAccessibleName(tr("Message"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Medium);
    rows->addLayout(makeButtons());
    rows->addLayout(makeHead());
    rows->addWidget(text, 1);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
    text->setFocus();
}

QPushButton* ViewMailView::add(QBoxLayout& row, const char* icon, const QString& keys,
                               const QKeySequence& key) {
    auto* button = new QPushButton(theme::icon(QString::fromLatin1(icon)), {}, this);
    button->setToolTip(keys);
    connect(new QShortcut(key, this), &QShortcut::activated, button, [button] { button->click(); });
    row.addWidget(button);
    return button;
}

QBoxLayout* ViewMailView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Small);
    attach(on_, form_.pic[frmViewMail::ReplyButton],
           *add(*row, "reply", tr("Ctrl+R"), QKeySequence(Qt::CTRL | Qt::Key_R)));
    attach(on_, form_.pic[frmViewMail::EraseButton],
           *add(*row, "erase", tr("Del"), QKeySequence(Qt::Key_Delete)));
    row->addStretch(1);
    attach(on_, form_.SaveAs, *add(*row, "save", tr("Ctrl+S"), QKeySequence(QKeySequence::Save)));
    QPushButton* paper = add(*row, "print", tr("Ctrl+P"), QKeySequence(QKeySequence::Print));
    paper->setText(tr("Print..."));
    connect(paper, &QPushButton::clicked, this, [this] { print(); });
    return row;
}

QBoxLayout* ViewMailView::makeHead() {
    auto* head = new QVBoxLayout;
    head->setSpacing(0);
    QLineEdit* subject = headLine(on_, form_.Text2, this);
    subject->setFont(theme::titleFont());
    subject->setAccessibleName(tr("Subject"));
    head->addWidget(subject);

    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Small);
    QLineEdit* sender = headLine(on_, form_.Text1, this);
    sender->setAccessibleName(tr("From"));
    auto* from = new QLabel(tr("From"), this);
    from->setIndent(theme::Small);
    from->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(from);
    row->addWidget(sender, 1);
    auto* mark = new IconLabel(theme::SmallIcon, this);
    attach(on_, form_.Image1, *mark, [](int) { return theme::icon(QStringLiteral("urgent")); });
    row->addWidget(mark);
    auto* urgent = new QLabel(this);
    attach(on_, form_.Label3, *urgent);
    row->addWidget(urgent);
    head->addLayout(row);
    return head;
}

// The box goes with the window, and the message may go before it.
void ViewMailView::print() {
    auto* printer = new QPrinter(QPrinter::HighResolution);
    printer->setDocName(oneLine(form_.Text2.Text.get(), LongestJob));
    auto* dialog = new QPrintDialog(printer, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QObject::destroyed, dialog, [printer] { delete printer; });
    connect(dialog, &QDialog::accepted, this, [this, printer] {
        printDocument(form_.RichTextBox1.Document(),
                      oneLine(form_.Text2.Text.get() + "\n" + form_.Caption.get(), 4 * LongestJob), *printer);
    });
    dialog->open();
}

}  // namespace talvora
