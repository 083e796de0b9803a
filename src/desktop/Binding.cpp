#include "desktop/Binding.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

#include "desktop/IconLabel.h"
#include "desktop/QtText.h"

namespace talvora {

namespace {

// Calls `show` with the value as it is now, and with every later one.
template <class T, class Show>
void follow(Subscriptions& on, Property<T>& property, Show show) {
    show(property.get());
    on += property.Changed.connect([show](const T& value) { show(value); });
}

}  // namespace

void attachVisible(Subscriptions& on, Property<bool>& visible, QWidget& widget) {
    follow(on, visible, [&widget](bool shown) { widget.setVisible(shown); });
}

void attach(Subscriptions& on, Label& model, QLabel& widget) {
    widget.setTextFormat(Qt::PlainText);
    follow(on, model.Caption, [&widget](const std::string& text) { widget.setText(toQString(text)); });
    attachVisible(on, model.Visible, widget);
}

void attach(Subscriptions& on, CheckBox& model, QCheckBox& widget) {
    follow(on, model.Caption, [&widget](const std::string& text) { widget.setText(toQString(text)); });
    follow(on, model.Value, [&widget](bool checked) { widget.setChecked(checked); });
    attachVisible(on, model.Visible, widget);
    QObject::connect(&widget, &QCheckBox::toggled, &widget,
                     [&model](bool checked) { model.Value = checked; });
}

void attach(Subscriptions& on, TextBox& model, QLineEdit& widget) {
    follow(on, model.Text, [&widget](const std::string& text) {
        if (fromQString(widget.text()) != text) widget.setText(toQString(text));
    });
    const auto select = [&model, &widget](std::size_t) {
        if (model.SelLength.get() > 0) {
            widget.setSelection(static_cast<int>(model.SelStart.get()),
                                static_cast<int>(model.SelLength.get()));
        }
    };
    follow(on, model.SelStart, select);
    follow(on, model.SelLength, select);
    on += model.GotFocus.connect([&widget] { widget.setFocus(); });
    QObject::connect(&widget, &QLineEdit::textChanged, &widget, [&model, &widget](const QString& text) {
        model.Text = fromQString(text);
        // What has no place in the code page is shown as what will be used.
        const QString kept = toQString(model.Text.get());
        if (kept == text) return;
        const int place = widget.cursorPosition();
        widget.setText(kept);
        widget.setCursorPosition(place);
    });
}

void attach(Subscriptions& on, Menu& model, QAction& action) {
    follow(on, model.Caption, [&action](const std::string& text) { action.setText(toQString(text)); });
    follow(on, model.Visible, [&action](bool shown) { action.setVisible(shown); });
    follow(on, model.Enabled, [&action](bool enabled) { action.setEnabled(enabled); });
    follow(on, model.Checked, [&action](bool checked) {
        if (action.isCheckable()) action.setChecked(checked);
    });
    QObject::connect(&action, &QAction::triggered, &action, [&model] { model.Click.raise(); });
}

void attach(Subscriptions& on, Image& model, IconLabel& widget, const PictureOf& pictureOf) {
    follow(on, model.Picture, [&widget, pictureOf](int picture) { widget.setIcon(pictureOf(picture)); });
    attachVisible(on, model.Visible, widget);
}

void attach(Subscriptions& on, Image& model, QAbstractButton& widget, const PictureOf& pictureOf) {
    if (pictureOf)
        follow(on, model.Picture, [&widget, pictureOf](int picture) { widget.setIcon(pictureOf(picture)); });
    attachVisible(on, model.Visible, widget);
    QObject::connect(&widget, &QAbstractButton::clicked, &widget, [&model] { model.Click.raise(); });
}

}  // namespace talvora
