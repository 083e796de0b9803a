#include "desktop/views/CornerView.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/Follow.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize CornerSize{frmPopup::BarWidth / TwipsPerPixel, frmPopup::HeadHeight / TwipsPerPixel};
constexpr int Edge = 1;  // the line around it
constexpr Qt::WindowFlags OpenedByHand = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
constexpr Qt::WindowFlags OpenedByPointer =
    OpenedByHand | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus;

}  // namespace

CornerView::CornerView(frmPopup& form, const ViewSite& site) : CornerView(form, site, form.Height) {}

// Other windows tell their form how large they are; this one is as large as the form says.
CornerView::CornerView(frmPopup& form, const ViewSite& site, int height)
    : FormView(form, site, "Corner", CornerSize), form_(form) {
    form_.Width = frmPopup::BarWidth;
    form_.Height = height;
    setWindowFlags(OpenedByPointer);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* frame = new QFrame(this);
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    frame->setForegroundRole(QPalette::Mid);
    content_ = frame;
    auto* rows = new QVBoxLayout(content_);
    rows->setContentsMargins(Edge, 0, Edge, Edge);
    rows->setSpacing(0);
    wins_ = addSection(form_.Label3, form_.Picture1, form_.Wins, *rows);
    notices_ = addSection(form_.Label1, form_.Picture2, form_.WinNotice, *rows);
    rows->addStretch(1);
    on_ += form_.TakesKeyboard.Changed.connect([this](bool takes) { takeKeyboard(takes); });
    on_ += form_.Unloaded.connect([this] {
        wins_->Release();
        notices_->Release();
    });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

BarSection* CornerView::addSection(Label& heading, frmPopup::Box& box, frmPopup::Buttons& buttons,
                                   QVBoxLayout& rows) {
    rows.addWidget(BarSection::Heading(heading, on_, content_));
    auto* area = new QScrollArea(content_);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* section = new BarSection(buttons, BarSection::Cooling::ByModel, area);
    area->setWidget(section);
    rows.addWidget(area);
    follow(on_, box.Height, [area](int height) { area->setFixedHeight(height / TwipsPerPixel); });
    follow(on_, box.Visible, [area](bool visible) { area->setVisible(visible); });
    return section;
}

void CornerView::showOrHide(bool) {
    place();
}

void CornerView::comeForward() {
    place();
    raise();
}

// Height, left and top change one after the other, and what is between does not show.
void CornerView::place() {
    if (std::exchange(isToStand_, true)) return;
    QMetaObject::invokeMethod(
        this, [this] { stand(); }, Qt::QueuedConnection);
}

void CornerView::stand() {
    isToStand_ = false;
    if (Ended()) return;
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int height = form_.Height / TwipsPerPixel;
    const int top = form_.Top / TwipsPerPixel;
    if (screen == nullptr || !form_.Visible || height + top <= 0) {
        hide();
        return;
    }
    // Moving a window costs a hundredth of drawing it anew at each step.
    const int cut = QGuiApplication::screens().size() > 1 ? std::min(top, 0) : 0;
    const QRect window(form_.Left / TwipsPerPixel, top - cut, form_.Width / TwipsPerPixel,
                       height + cut + Edge);
    content_->setGeometry(0, cut, window.width(), height + Edge);
    setGeometry(window.translated(screen->geometry().topLeft()));
    show();
}

// A window that may have the keyboard is another kind of window to the desktop.
void CornerView::takeKeyboard(bool takes) {
    setWindowFlags(takes ? OpenedByHand : OpenedByPointer);
    setAttribute(Qt::WA_ShowWithoutActivating, !takes);
    if (!takes) {
        place();
        return;
    }
    stand();
    if (!wins_->TakeFocus()) notices_->TakeFocus();
}

void CornerView::enterEvent(QEnterEvent* event) {
    FormView::enterEvent(event);
    if (!Ended()) form_.PointerEnters();
}

// The form says where it stands; the desktop is late with what it tells.
void CornerView::moveEvent(QMoveEvent*) {}

void CornerView::resizeEvent(QResizeEvent*) {}

}  // namespace talvora
