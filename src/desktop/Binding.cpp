#include "desktop/Binding.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>

#include "desktop/Follow.h"
#include "desktop/IconLabel.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

// Tells a box when the keyboard comes and goes.
class FocusEar final : public QObject {
  public:
    FocusEar(TextBox& model, QWidget& widget) : QObject(&widget), model_(model) {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) model_.userEnters();
        // A menu of the box takes the keyboard for a moment only.
        if (event->type() == QEvent::FocusOut &&
            static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
            model_.userLeaves();
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    TextBox& model_;
};

QColor colorOf(Colour colour) {
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

// What both widgets of a box have in common. A background of the form's own is made for dark letters.
template <class Box>
void attachBox(Subscriptions& on, TextBox& model, Box& widget) {
    follow(on, model.Enabled, [&widget](bool enabled) { widget.setEnabled(enabled); });
    follow(on, model.Locked, [&widget](bool locked) { widget.setReadOnly(locked); });
    follow(on, model.BackColor, [&widget](const std::optional<Colour>& colour) {
        QPalette palette;
        if (colour) {
            palette.setColor(QPalette::Base, colorOf(*colour));
            palette.setColor(QPalette::Text, theme::pageTextColor());
        }
        widget.setPalette(palette);
    });
    on += model.GotFocus.connect([&widget] { widget.setFocus(); });
    new FocusEar(model, widget);
}

// Return anywhere in the window presses the button, unless a box takes it for a new line.
void pressByReturn(Subscriptions& on, CommandButton& model, QPushButton& widget) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(key), &widget);
        QObject::connect(shortcut, &QShortcut::activated, &widget, [&widget] { widget.click(); });
        follow(on, model.Default, [shortcut](bool byReturn) { shortcut->setEnabled(byReturn); });
    }
}

}  // namespace

void attachVisible(Subscriptions& on, Property<bool>& visible, QWidget& widget) {
    follow(on, visible, [&widget](bool shown) { widget.setVisible(shown); });
}

void attach(Subscriptions& on, Label& model, QLabel& widget) {
    widget.setTextFormat(Qt::PlainText);
    follow(on, model.Caption, [&widget](const std::string& text) { widget.setText(toQString(text)); });
    // A label that is never bold keeps the font that its view chose.
    follow(on, model.FontBold, [&widget](bool bold) {
        QFont font = widget.font();
        if (font.bold() == bold) return;
        font.setBold(bold);
        widget.setFont(font);
    });
    follow(on, model.ForeColor, [&widget](const std::optional<Colour>& colour) {
        QPalette palette = widget.palette();
        const QColor normal = QApplication::palette(&widget).color(QPalette::WindowText);
        palette.setColor(QPalette::WindowText, colour ? colorOf(*colour) : normal);
        if (colour || palette.color(QPalette::WindowText) != widget.palette().color(QPalette::WindowText))
            widget.setPalette(palette);
    });
    attachVisible(on, model.Visible, widget);
}

void attach(Subscriptions& on, CommandButton& model, QPushButton& widget) {
    follow(on, model.Caption, [&widget](const std::string& text) { widget.setText(toQString(text)); });
    follow(on, model.Enabled, [&widget](bool enabled) { widget.setEnabled(enabled); });
    attachVisible(on, model.Visible, widget);
    QObject::connect(&widget, &QPushButton::clicked, &widget, [&model] { model.Click.raise(); });
    pressByReturn(on, model, widget);
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
    attachBox(on, model, widget);
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

void attach(Subscriptions& on, TextBox& model, QPlainTextEdit& widget) {
    follow(on, model.Text, [&widget](const std::string& text) {
        const QString shown = toQString(text).remove(QLatin1Char('\r'));
        if (widget.toPlainText() != shown) widget.setPlainText(shown);
    });
    attachBox(on, model, widget);
    QObject::connect(&widget, &QPlainTextEdit::textChanged, &widget, [&model, &widget] {
        model.Text = fromQString(widget.toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
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
