#include "desktop/views/SettingsView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/PluginTableView.h"
#include "desktop/views/StateTableView.h"

namespace talvora {

namespace {

// Small print below a line.
void addHint(QFormLayout* group, const QString& text) {
    auto* hint = new QLabel(text, group->parentWidget());
    hint->setFont(theme::smallFont());
    group->addRow(QString(), hint);
}

}  // namespace

SettingsView::SettingsView(std::unique_ptr<Settings> model)
    : model_(std::move(model)), widget_(new QTabWidget) {
    widget_->setDocumentMode(true);
    addYou();
    addConnection();
    addNotices();
    addMail();
    addTables();
    on_ += model_->Edited.connect([this] { Edited.raise(); });
    QObject::connect(widget_, &QObject::destroyed, widget_, [this] { on_.clear(); });
}

SettingsView::~SettingsView() {
    delete widget_.data();
}

QWidget& SettingsView::Widget() {
    return *widget_;
}

QString SettingsView::Problem() const {
    return toQString(model_->Problem());
}

QWidget* SettingsView::addTab(const QString& name) {
    auto* tab = new QWidget(widget_);
    auto* rows = new QVBoxLayout(tab);
    rows->setSpacing(theme::Large);
    widget_->addTab(tab, name);
    return tab;
}

QFormLayout* SettingsView::addGroup(QWidget* tab, const QString& name) {
    auto* group = new QGroupBox(name, tab);
    auto* lines = new QFormLayout(group);
    lines->setSpacing(theme::Medium);
    lines->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    static_cast<QVBoxLayout*>(tab->layout())->addWidget(group);
    return lines;
}

void SettingsView::addText(QFormLayout* group, Label& caption, TextBox& box, bool secret) {
    auto* label = new QLabel(group->parentWidget());
    auto* line = new QLineEdit(group->parentWidget());
    if (secret) line->setEchoMode(QLineEdit::Password);
    attach(on_, caption, *label);
    attach(on_, box, *line);
    line->setCursorPosition(0);
    group->addRow(label, line);
    label->setBuddy(line);
}

void SettingsView::addChoice(QFormLayout* group, Label& caption, ComboBox& box) {
    auto* label = new QLabel(group->parentWidget());
    auto* list = new QComboBox(group->parentWidget());
    attach(on_, caption, *label);
    attach(on_, box, *list);
    group->addRow(label, list);
    label->setBuddy(list);
}

void SettingsView::addFlags(QFormLayout* group, std::initializer_list<CheckBox*> boxes) {
    for (CheckBox* box : boxes) {
        auto* widget = new QCheckBox(group->parentWidget());
        attach(on_, *box, *widget);
        group->addRow(widget);
    }
}

void SettingsView::addYou() {
    QWidget* tab = addTab(QObject::tr("You"));
    QFormLayout* who = addGroup(tab, QObject::tr("Who you are"));
    addText(who, model_->lblNickname, model_->Nickname);
    addText(who, model_->lblRealName, model_->RealName);
    addHint(who, toQString(model_->lblExample.Caption.get()));
    addText(who, model_->lblPass, model_->Pass, true);
    QFormLayout* leaving = addGroup(tab, QObject::tr("When you leave"));
    addText(leaving, model_->lblQuitMsg, model_->QuitMsg);
    static_cast<QVBoxLayout*>(tab->layout())->addStretch();
}

void SettingsView::addConnection() {
    QWidget* tab = addTab(QObject::tr("Connection"));
    QFormLayout* server = addGroup(tab, QObject::tr("Server"));
    addFlags(server, {&model_->AutoRetry, &model_->ShowMOTD});
    addText(server, model_->lblAP, model_->AP);
    QFormLayout* files = addGroup(tab, QObject::tr("File transfers"));
    addChoice(files, model_->lblPackageSplit, model_->PackageSplit);
    addChoice(files, model_->lblIPRMethod, model_->IPRMethod);
    static_cast<QVBoxLayout*>(tab->layout())->addStretch();
}

void SettingsView::addNotices() {
    QWidget* tab = addTab(QObject::tr("Notices"));
    addFlags(addGroup(tab, QObject::tr("Conversations")),
             {&model_->PopupPM, &model_->PopupChan, &model_->CreateOnPM, &model_->PopupFriend});
    addFlags(addGroup(tab, QObject::tr("Announcements")),
             {&model_->ReceiveAnn, &model_->NoQueries, &model_->NoInfo});
    addFlags(addGroup(tab, QObject::tr("Window list bar")), {&model_->EnableBar, &model_->NoticeBar});
    static_cast<QVBoxLayout*>(tab->layout())->addStretch();
}

void SettingsView::addMail() {
    QWidget* tab = addTab(QObject::tr("Mail"));
    QFormLayout* mail = addGroup(tab, QObject::tr("Messages"));
    addFlags(mail, {&model_->PopupMail, &model_->DisplayMail});
    addText(mail, model_->lblMailInterval, model_->MailInterval);
    addHint(mail, QObject::tr("(in minutes)"));
    static_cast<QVBoxLayout*>(tab->layout())->addStretch();
}

void SettingsView::addTables() {
    widget_->addTab(new StateTableView(model_->States, widget_), QObject::tr("States"));
    widget_->addTab(new PluginTableView(model_->Plugins, widget_), QObject::tr("Plug-ins"));
}

}  // namespace talvora
