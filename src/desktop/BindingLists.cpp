// The bindings of bars and lists.

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QTabBar>
#include <QToolBar>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr std::size_t LongestLine = 300;  // that a list shows
constexpr int ProgressSteps = 10'000;     // the toolkit counts in 32 bits, a file's bytes need more

void showProgress(const ProgressBar& model, QProgressBar& widget) {
    const double span = static_cast<double>(model.Max()) - static_cast<double>(model.Min());
    const double done = static_cast<double>(model.Value()) - static_cast<double>(model.Min());
    widget.setValue(span > 0 ? static_cast<int>(done / span * ProgressSteps) : 0);
}

QString toolTipOf(const ToolbarButton& button) {
    return theme::plainToolTip(toQString(button.ToolTipText.empty() ? button.Caption : button.ToolTipText));
}

void addButton(Subscriptions& on, Toolbar& model, ToolbarButton& button, QToolBar& widget,
               const QIcon& icon) {
    if (button.Style == ButtonStyle::Separator) {
        widget.addSeparator();
        return;
    }
    QAction* action = widget.addAction(icon, caption(button.Caption));
    action->setToolTip(toolTipOf(button));
    action->setCheckable(button.Style == ButtonStyle::Toggle);
    follow(on, button.Enabled, [action](bool enabled) { action->setEnabled(enabled); });
    follow(on, button.Value, [action](bool down) { action->setChecked(down); });
    QObject::connect(action, &QAction::triggered, &widget, [&] { model.userPresses(button); });
}

}  // namespace

void attach(Subscriptions& on, ComboBox& model, QComboBox& widget) {
    for (const std::string& line : model.List) widget.addItem(toQString(line));
    follow(on, model.ListIndex, [&widget](int index) { widget.setCurrentIndex(index); });
    QObject::connect(&widget, &QComboBox::currentIndexChanged, &widget,
                     [&model](int index) { model.ListIndex = index; });
}

void attach(Subscriptions& on, EditCombo& model, QComboBox& widget) {
    widget.setEditable(true);
    widget.setInsertPolicy(QComboBox::NoInsert);
    // What is typed is meant as typed, also if it is how a line begins.
    widget.setCompleter(nullptr);
    for (const std::string& line : model.List) widget.addItem(toQString(line));
    widget.setCurrentIndex(-1);
    attach(on, static_cast<TextBox&>(model), *widget.lineEdit());
    follow(on, model.Enabled, [&widget](bool enabled) { widget.setEnabled(enabled); });
}

void attach(Subscriptions& on, ListBox& model, QListWidget& widget) {
    const auto add = [&model, &widget](int index) {
        widget.addItem(oneLine(model.List(index), LongestLine));
    };
    for (int i = 0; i < model.ListCount(); ++i) add(i);
    on += model.LineAdded.connect(add);
    on += model.LineChanged.connect([&model, &widget](int index) {
        widget.item(index)->setText(oneLine(model.List(index), LongestLine));
    });
    on += model.LineRemoved.connect([&widget](int index) {
        const QSignalBlocker byCode(widget);  // the toolkit selects a neighbour; the model does not
        delete widget.takeItem(index);
    });
    on += model.Cleared.connect([&widget] {
        const QSignalBlocker byCode(widget);
        widget.clear();
    });
    follow(on, model.ListIndex, [&widget](int index) { widget.setCurrentRow(index); });
    QObject::connect(&widget, &QListWidget::currentRowChanged, &widget,
                     [&model](int index) { model.ListIndex = index; });
}

void attach(Subscriptions& on, ProgressBar& model, QProgressBar& widget) {
    widget.setRange(0, ProgressSteps);
    showProgress(model, widget);
    on += model.Changed.connect([&model, &widget] { showProgress(model, widget); });
}

void attach(Subscriptions& on, TabStrip& model, QTabBar& widget) {
    for (const std::string& text : model.Captions()) widget.addTab(caption(text));
    follow(on, model.Selected, [&widget](int index) { widget.setCurrentIndex(index); });
    // By mouse, also on the tab that is chosen already; by keyboard only on another.
    QObject::connect(&widget, &QTabBar::tabBarClicked, &widget, [&model](int index) {
        if (index >= 0) model.userClicks(index);
    });
    QObject::connect(&widget, &QTabBar::currentChanged, &widget, [&model](int index) {
        if (index >= 0 && index != model.Selected) model.userClicks(index);
    });
}

void attach(Subscriptions& on, Toolbar& model, QToolBar& widget, const PictureOf& pictureOf) {
    for (int i = 1; i <= model.Count(); ++i) {
        addButton(on, model, model.Buttons(i), widget, pictureOf ? pictureOf(i) : QIcon());
    }
}

}  // namespace talvora
