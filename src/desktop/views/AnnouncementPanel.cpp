#include "desktop/views/AnnouncementPanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "chat/Links.h"
#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/LinkNote.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

AnnouncementPanel::AnnouncementPanel(picAnn& model, Platform& platform, QWidget* parent) : QWidget(parent) {
    auto* title = new QLabel(this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    follow(on_, model.Label14.Caption, [title](const std::string& text) { title->setText(caption(text)); });
    auto* whoAndWhen = new QLabel(this);
    whoAndWhen->setFont(theme::smallFont());
    whoAndWhen->setWordWrap(true);
    whoAndWhen->setMinimumWidth(1);
    attach(on_, model.Label17, *whoAndWhen);
    auto* text = new LinkNote(this);
    text->setAccessibleName(tr("Last announcement"));
    text->setFrameShape(QFrame::NoFrame);
    follow(on_, model.Label16.Caption, [text](const std::string& shown) { text->setNote(shown); });
    on_ += text->LinkClicked.connect([&platform](const std::string& link) { OpenLink(platform, link); });

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(theme::Small);
    buttons->addWidget(makeButton(model.Label15));
    buttons->addWidget(makeButton(model.PostNew));
    buttons->addStretch(1);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Medium, theme::Medium, theme::Medium, theme::Medium);
    rows->setSpacing(theme::Small);
    rows->addWidget(title);
    rows->addWidget(whoAndWhen);
    rows->addWidget(text, 1);
    rows->addLayout(buttons);
}

QWidget* AnnouncementPanel::makeButton(Label& model) {
    auto* button = new QPushButton(this);
    button->setMinimumWidth(1);
    follow(on_, model.Caption, [button](const std::string& text) { button->setText(caption(text)); });
    attachVisible(on_, model.Visible, *button);
    connect(button, &QPushButton::clicked, this, [&model] { model.Click.raise(); });
    return button;
}

}  // namespace talvora
