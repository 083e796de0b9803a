#pragma once
// Ties the models of simple controls to widgets. What the model says goes to the widget; what the user does
// goes to the model, and its echo back raises nothing. The subscriptions belong to the view.

#include <QIcon>
#include <functional>

#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/ListBox.h"

class QAbstractButton;
class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTabBar;
class QToolBar;
class QWidget;

namespace talvora {

class IconLabel;

// The text as it stands, never as rich text; the label is hidden with the model.
void attach(Subscriptions& on, Label& model, QLabel& widget);
void attach(Subscriptions& on, CheckBox& model, QCheckBox& widget);
void attach(Subscriptions& on, CommandButton& model, QPushButton& widget);
void attach(Subscriptions& on, TextBox& model, QLineEdit& widget);
// A box of several lines; in the model they end in CR LF.
void attach(Subscriptions& on, TextBox& model, QPlainTextEdit& widget);
void attach(Subscriptions& on, ComboBox& model, QComboBox& widget);
void attach(Subscriptions& on, EditCombo& model, QComboBox& widget);
void attach(Subscriptions& on, ListBox& model, QListWidget& widget);
void attach(Subscriptions& on, ProgressBar& model, QProgressBar& widget);
void attach(Subscriptions& on, TabStrip& model, QTabBar& widget);
void attach(Subscriptions& on, Menu& model, QAction& action);
// A picture by its number; a button clicks the model.
using PictureOf = std::function<QIcon(int)>;
void attach(Subscriptions& on, Image& model, IconLabel& widget, const PictureOf& pictureOf);
void attach(Subscriptions& on, Image& model, QAbstractButton& widget, const PictureOf& pictureOf = {});
// The pictures of the buttons by their index; one without a picture shows its caption.
void attach(Subscriptions& on, Toolbar& model, QToolBar& widget, const PictureOf& pictureOf);
void attachVisible(Subscriptions& on, Property<bool>& visible, QWidget& widget);

}  // namespace talvora
