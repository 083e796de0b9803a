#include "desktop/views/ScriptsView.h"

#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/IconLabel.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize ScriptsSize{600, 440};

}  // namespace

ScriptsView::ScriptsView(frmScripts& form, const ViewSite& site)
    : FormView(form, site, "Scripts", ScriptsSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("script")));
    auto* what = new QLabel(this);
    what->setWordWrap(true);
    attach(on_, form_.Label3, *what);
    auto* tabs = new QTabBar(this);
    tabs->setDocumentMode(true);
    tabs->setDrawBase(true);
    tabs->setExpanding(false);
    tabs->setAccessibleName(tr("Where the scripts are run"));
    attach(on_, form_.TabStrip1, *tabs);

    auto* columns = new QHBoxLayout;
    columns->setSpacing(theme::Large);
    columns->addLayout(makeEntries(), 1);
    columns->addLayout(makeEntry(), 2);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(theme::Large, theme::Large, theme::Large, theme::Large);
    rows->setSpacing(theme::Medium);
    rows->addWidget(what);
    rows->addWidget(tabs);
    rows->addLayout(columns, 1);
    rows->addLayout(makeButtons());
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

QBoxLayout* ScriptsView::makeEntries() {
    auto* column = new QVBoxLayout;
    column->setSpacing(theme::Small);
    auto* caption = new QLabel(this);
    attach(on_, form_.Label1, *caption);
    column->addWidget(caption);
    auto* list = new QListWidget(this);
    list->setAccessibleName(tr("Entries"));
    attach(on_, form_.List1, *list);
    caption->setBuddy(list);
    column->addWidget(list, 1);
    auto* row = new QHBoxLayout;
    row->setSpacing(theme::Small);
    for (CommandButton* model : {&form_.Add, &form_.Remove}) {
        auto* button = new QPushButton(this);
        attach(on_, *model, *button);
        row->addWidget(button);
    }
    column->addLayout(row);
    return column;
}

QBoxLayout* ScriptsView::makeEntry() {
    auto* column = new QVBoxLayout;
    column->setSpacing(theme::Small);
    auto* nameCaption = new QLabel(tr("&Name:"), this);
    column->addWidget(nameCaption);
    auto* name = new QLineEdit(this);
    name->setAccessibleName(tr("Name"));
    attach(on_, form_.EntryName, *name);
    nameCaption->setBuddy(name);
    column->addWidget(name);
    column->addSpacing(theme::Small);
    auto* caption = new QLabel(this);
    attach(on_, form_.Label2, *caption);
    column->addWidget(caption);
    auto* script = new QPlainTextEdit(this);
    script->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    script->setTabChangesFocus(true);
    script->setAccessibleName(tr("Server commands"));
    attach(on_, form_.Text1, *script);
    caption->setBuddy(script);
    column->addWidget(script, 1);
    column->addWidget(makeProblem());
    return column;
}

QWidget* ScriptsView::makeProblem() {
    auto* line = new QWidget(this);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme::Small);
    auto* picture = new IconLabel(theme::SmallIcon, line);
    picture->setIcon(theme::icon(QStringLiteral("warning")));
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* problem = new QLabel(line);
    problem->setWordWrap(true);
    attach(on_, form_.Problem, *problem);
    row->addWidget(problem, 1);
    follow(on_, form_.Problem.Caption,
           [picture](const std::string& text) { picture->setVisible(!text.empty()); });
    return line;
}

QBoxLayout* ScriptsView::makeButtons() {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    for (CommandButton* model : {&form_.Ok, &form_.Cancel}) {
        auto* button = new QPushButton(this);
        attach(on_, *model, *button);
        row->addWidget(button);
    }
    return row;
}

}  // namespace talvora
