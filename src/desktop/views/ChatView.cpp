#include "desktop/views/ChatView.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"
#include "desktop/Theme.h"
#include "desktop/WritingBox.h"
#include "desktop/views/SlotPanel.h"

namespace talvora {

ChatView::ChatView(ChatWindow& window, const ViewSite& site, const std::string& kind, QSize standardSize)
    : FormView(window, site, kind, standardSize), window_(window), across_(new QSplitter(this)) {
    RichTextView* talk = addRichText(window_.IRCWin1.RichTextBox1);
    talk->setAccessibleName(tr("Conversation"));
    across_->addWidget(talk);
    across_->setStretchFactor(0, 1);
    across_->setChildrenCollapsible(false);
    plugins_ = new SlotPanel(window_.Slots, window_.PluginsWidth, site.Plugins, this);

    auto* top = new QHBoxLayout;
    top->addWidget(across_, 1);
    top->addWidget(plugins_);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Small, theme::Small, theme::Small, theme::Small);
    rows->setSpacing(theme::Small);
    rows->addLayout(top, 1);
    rows->addWidget(makeWriting());
    setFocusProxy(writing_);
}

QWidget* ChatView::makeWriting() {
    auto* bottom = new QWidget(this);
    auto* row = new QHBoxLayout(bottom);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Small);
    writing_ = new WritingBox(window_.Text1, bottom);
    writing_->setAccessibleName(tr("Message"));
    writing_->setPlaceholderText(tr("Write a message"));
    row->addWidget(writing_, 1);
    row->addLayout(makeButtons());
    return bottom;
}

QHBoxLayout* ChatView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    const auto add = [&](const QString& icon, const QString& text) {
        QToolButton* button = theme::iconButton(icon, text, this);
        row->addWidget(button, 0, Qt::AlignBottom);
        return button;
    };
    attach(on_, window_.Image2, *add(QStringLiteral("send"), tr("Send Text (Enter)")));
    attach(on_, window_.Image3, *add(QStringLiteral("send-action"), tr("Send Action Text (Ctrl+Enter)")));
    QToolButton* smiley = add(QStringLiteral("smiley"), tr("Emoticons"));
    connect(smiley, &QToolButton::clicked, this, [this, smiley] {
        const QPoint above = smiley->mapToGlobal(QPoint(0, 0));
        window_.Image1_MouseUp(above.x() * TwipsPerPixel, above.y() * TwipsPerPixel);
    });
    attach(on_, window_.Image4, *add(QStringLiteral("menu"), tr("Settings of this window")));
    QToolButton* fold = add(QStringLiteral("menu"), tr("Plug-ins"));
    fold->setVisible(plugins_->HasSlots());
    on_ += plugins_->SlotsChanged.connect([this, fold] { fold->setVisible(plugins_->HasSlots()); });
    follow(on_, window_.PluginsWidth, [this, fold](int) {
        fold->setArrowType(window_.PluginsAreFolded() ? Qt::LeftArrow : Qt::RightArrow);
    });
    connect(fold, &QToolButton::clicked, this, [this] { window_.FoldPlugins.Click.raise(); });
    return row;
}

void ChatView::addBeside(QWidget* widget, int width) {
    across_->addWidget(widget);
    across_->setStretchFactor(1, 0);
    across_->setSizes({this->width() - width, width});
}

// The box to write in would take them for text.
void ChatView::takeDropped(TakeFiles take) {
    const auto thisWindow = [](QPoint) { return std::optional<std::string>(""); };
    takeFiles(*writing_->viewport(), take, thisWindow);
    takeFiles(*this, std::move(take), thisWindow);
}

void ChatView::offerWords(WordOffers::Source source) {
    writing_->setOffers(std::move(source));
}

void ChatView::showEvent(QShowEvent* event) {
    FormView::showEvent(event);
    if (!std::exchange(seen_, true)) writing_->setFocus();
}

void ChatView::addCommands(QMenu& menu, CommandMenu& commands) {
    if (commands.Entries.UBound() < 0) {
        addEntry(menu, commands.mnuCmd)->setEnabled(false);
        return;
    }
    QMenu* const scripts = menu.addMenu(toQString(commands.mnuCmd.Caption.get()));
    for (int i = 0; i <= commands.Entries.UBound(); ++i) addEntry(*scripts, commands.Entries(i));
}

}  // namespace talvora
