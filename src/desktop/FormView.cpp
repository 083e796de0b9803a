#include "desktop/FormView.h"

#include <QCloseEvent>
#include <QCursor>
#include <QScreen>
#include <QShortcut>
#include <algorithm>
#include <memory>
#include <utility>

#include "desktop/Binding.h"
#include "desktop/ListTree.h"
#include "desktop/NodeTree.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"

namespace talvora {

namespace {

constexpr int LongestTitle = 200;
constexpr double ZoomStep = 1.1;

}  // namespace

FormView::FormView(Form& form, const ViewSite& site, std::string kind, QSize standardSize)
    : form_(form), site_(site), kind_(std::move(kind)), self_(std::make_shared<FormView*>(this)) {
    setWindowFlag(Qt::Window);
    resize(site_.Memory.size(kind_, standardSize).boundedTo(screen()->availableSize()));
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, [this] { close(); });
    form_.Width = width() * TwipsPerPixel;
    form_.Height = height() * TwipsPerPixel;
    site_.Face.Register(form_, *this);
    followForm();
}

FormView::~FormView() {
    *self_ = nullptr;
    if (!ended_) site_.Face.Forget(form_);
}

void FormView::followForm() {
    showTitle();
    on_ += form_.Caption.Changed.connect([this](const std::string&) { showTitle(); });
    on_ += form_.Visible.Changed.connect([this](bool visible) { showOrHide(visible); });
    on_ += form_.Shown.connect([this] { comeForward(); });
    for (Property<int>* edge : {&form_.Left, &form_.Top, &form_.Width, &form_.Height}) {
        on_ += edge->Changed.connect([this](int) { place(); });
    }
    on_ += form_.WindowState.Changed.connect([this](FormState state) {
        const bool minimized = state == FormState::Minimized;
        setWindowState(minimized ? windowState() | Qt::WindowMinimized
                                 : windowState() & ~Qt::WindowMinimized);
    });
    on_ += form_.PopupMenu.connect([this](Menu& model) { popUp(model, menuPlace()); });
    on_ += form_.Unloaded.connect([this] { end(); });
}

// A caption may hold what a stranger calls himself. The toolkit takes "[*]" for a mark of its own.
void FormView::showTitle() {
    const QString title =
        oneLine(form_.Caption.get(), LongestTitle).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(mark_.isEmpty() ? title : mark_ + QStringLiteral(": ") + title);
}

void FormView::Mark(const QString& word, const QIcon& icon) {
    if (mark_.isEmpty()) unmarked_ = windowIcon();
    mark_ = word;
    setWindowIcon(icon);
    showTitle();
}

void FormView::Unmark() {
    if (mark_.isEmpty()) return;
    mark_.clear();
    setWindowIcon(unmarked_);
    showTitle();
}

// A window that the user has asked for takes the keyboard; one that comes by itself stays out of his way.
void FormView::showOrHide(bool visible) {
    if (ended_) return;
    setAttribute(Qt::WA_ShowWithoutActivating, !site_.Face.UserActs());
    setVisible(visible);
}

void FormView::comeForward() {
    if (ended_ || !isVisible() || !site_.Face.UserActs()) return;
    if (isMinimized()) showNormal();
    raise();
    activateWindow();
}

void FormView::place() {
    if (placing_) return;
    placing_ = true;
    move(std::max(form_.Left / TwipsPerPixel, 0), std::max(form_.Top / TwipsPerPixel, 0));
    resize(form_.Width / TwipsPerPixel, form_.Height / TwipsPerPixel);
    placing_ = false;
}

// ---- The end

void FormView::end() {
    if (std::exchange(ended_, true)) return;
    hide();
    site_.Face.Forget(form_);
    site_.ThePlatform.Guarded.WhenIdle([self = self_] {
        if (*self != nullptr) (*self)->release();
    });
}

// All that knows the form goes now; but the toolkit may still be busy with the window itself, or with a menu
// of it, which is closed by now.
void FormView::release() {
    on_.clear();
    for (QWidget* child : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (child->isWindow()) {
            child->deleteLater();
        } else {
            delete child;
        }
    }
    deleteLater();
}

// ---- Hands

void FormView::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!ended_) closeBox();
}

void FormView::closeBox() {
    form_.Unload(CloseReason::UserClosesBox);
}

void FormView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || ended_) return;
    form_.WindowState = isMinimized() ? FormState::Minimized : FormState::Normal;
}

void FormView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (placing_ || ended_) return;
    placing_ = true;
    form_.Width = width() * TwipsPerPixel;
    form_.Height = height() * TwipsPerPixel;
    placing_ = false;
    if (isVisible() && !isMaximized() && !isFullScreen()) site_.Memory.keepSize(kind_, size());
}

void FormView::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (placing_ || ended_) return;
    placing_ = true;
    form_.Left = x() * TwipsPerPixel;
    form_.Top = y() * TwipsPerPixel;
    placing_ = false;
}

// ---- Menus

// At the pointer, if that is what has opened the menu; else at what has the keyboard.
QPoint FormView::menuPlace() const {
    const QPoint pointer = QCursor::pos();
    QWidget* focus = focusWidget();
    if (focus == nullptr || rect().contains(mapFromGlobal(pointer))) return pointer;
    if (const auto* list = dynamic_cast<ListTree*>(focus)) return list->menuPlace();
    if (const auto* tree = dynamic_cast<NodeTree*>(focus)) return tree->menuPlace();
    return focus->mapToGlobal(focus->rect().bottomLeft());
}

void FormView::fillMenu(QMenu&, Menu&) {}

QAction* FormView::addEntry(QMenu& menu, Menu& model, bool checkable) {
    QAction* action = menu.addAction(QString());
    action->setCheckable(checkable);
    Subscriptions whileShown;
    attach(whileShown, model, *action);
    return action;
}

void FormView::popUp(Menu& model, QPoint at) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu, model);
    if (menu->isEmpty()) {
        delete menu;
        return;
    }
    menu->popup(at);
}

// ---- Rich text

RichTextView* FormView::addRichText(RichTextBox& model) {
    auto* view =
        new RichTextView(model, site_.ThePlatform.Screen.TheClipboard(), site_.ThePlatform.Guarded, this);
    view->setZoom(site_.Memory.zoom(kind_));
    on_ += view->ZoomChanged.connect([this](double zoom) { site_.Memory.keepZoom(kind_, zoom); });
    const auto key = [&](const QKeySequence& keys, auto act) {
        auto* shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, view, act);
    };
    key(QKeySequence(Qt::CTRL | Qt::Key_Plus), [view] { view->setZoom(view->Zoom() * ZoomStep); });
    key(QKeySequence(Qt::CTRL | Qt::Key_Equal), [view] { view->setZoom(view->Zoom() * ZoomStep); });
    key(QKeySequence(Qt::CTRL | Qt::Key_Minus), [view] { view->setZoom(view->Zoom() / ZoomStep); });
    key(QKeySequence(Qt::CTRL | Qt::Key_0), [view] { view->setZoom(1); });
    return view;
}

}  // namespace talvora
