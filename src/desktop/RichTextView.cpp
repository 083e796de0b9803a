#include "desktop/RichTextView.h"

#include <QAccessible>
#include <QApplication>
#include <QPaintEvent>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "desktop/QtText.h"
#include "desktop/RichPainter.h"
#include "desktop/RichTextAccessible.h"

namespace talvora {

namespace {

constexpr int Frame = 16;  // milliseconds
constexpr std::int64_t MaxBar = 1 << 30;
constexpr std::size_t MaxAnnounced = 16 << 10;
constexpr double GlideShare = 0.3;  // of the way that is left, in a frame

QEvent::Type frameEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

}  // namespace

RichTextView::RichTextView(RichTextBox& model, Clipboard& clipboard, Guard& guard, QWidget* parent)
    : QAbstractScrollArea(parent),
      model_(model),
      clipboard_(clipboard),
      guard_(guard),
      page_(model.Document()),
      scroll_(page_) {
    RichTextAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // so that no text is wrapped anew when it is needed
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    gliding_ = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
                     [this](int value) { barMoved(value); });
    bind();
    lockedChanged();
}

RichTextView::~RichTextView() = default;

// ---- Following the model

void RichTextView::bind() {
    auto& document = model_.Document();
    on_ += document.Changed.connect([this](const DocumentChange& change) { documentChanged(change); });
    on_ += document.Dropped.connect([this](std::uint64_t count) {
        page_.dropped(count);
        touch();
    });
    on_ += document.HeadChanged.connect([this] {
        headChanged_ = true;
        touch();
    });
    on_ += model_.SelChange.connect([this] {
        selectionChanged_ = true;
        touch();
    });
    on_ += model_.Locked.Changed.connect([this](bool) { lockedChanged(); });
    on_ += model_.Enabled.Changed.connect([this](bool enabled) { setEnabled(enabled); });
    on_ += model_.Visible.Changed.connect([this](bool visible) { setVisible(visible); });
    setEnabled(model_.Enabled);
    if (!model_.Visible) setVisible(false);
}

void RichTextView::lockedChanged() {
    setAttribute(Qt::WA_InputMethodEnabled, editable());
    restartCaret();
    touch();
}

void RichTextView::documentChanged(const DocumentChange& change) {
    page_.changed(change);
    const RichDocument& document = model_.Document();
    const bool isAll =
        change.First <= document.FirstNumber() && change.First + change.NewCount >= document.EndNumber();
    if (isAll && model_.Locked) {
        scrolledUp_ = false;
        scroll_.toBegin();
    }
    if (!announceFrom_ || change.First < *announceFrom_) announceFrom_ = change.First;
    touch();
}

// A handler that changes the document again while it tells of a change can leave the rows behind.
void RichTextView::resynchronize() {
    const RichDocument& document = model_.Document();
    const RowCache& rows = page_.Rows();
    if (rows.FirstNumber() == document.FirstNumber() && rows.EndNumber() == document.EndNumber()) return;
    page_.headChanged();
}

void RichTextView::caretMoved() {
    if (QAccessible::isActive()) {
        QAccessibleTextCursorEvent event(this,
                                         static_cast<int>(model_.Document().PositionOf(model_.Caret())));
        QAccessible::updateAccessibility(&event);
    }
    if (editable()) {
        restartCaret();
        if (drag_ == Drag::None) scroll_.reveal(model_.Caret());
        if (!page_.Composing().empty()) page_.setPreedit(page_.Composing(), model_.Caret().Paragraph);
        updateMicroFocus();
    } else if (!scrolledUp_ && model_.Caret() == model_.Document().End() &&
               model_.Caret() == model_.Anchor()) {
        scroll_.follow();
    }
}

void RichTextView::announce() {
    if (!announceFrom_) return;
    const RichDocument& document = model_.Document();
    const Place from = document.Within({*announceFrom_, 0});
    announceFrom_.reset();
    if (!QAccessible::isActive() || editable()) return;
    const QString text = toQString(document.Text(from, document.End()).substr(0, MaxAnnounced));
    QAccessibleTextInsertEvent event(this, static_cast<int>(document.PositionOf(from)), text);
    QAccessible::updateAccessibility(&event);
}

// ---- Frames

// The first change after a calm is painted at once, further ones with the next frame.
void RichTextView::touch() {
    dirty_ = true;
    wantFrames();
}

void RichTextView::wantFrames() {
    if (framePosted_ || frames_.isActive() || !isVisible()) return;
    framePosted_ = true;
    QCoreApplication::postEvent(this, new QEvent(frameEvent()));
}

void RichTextView::customEvent(QEvent* event) {
    if (event->type() != frameEvent()) return;
    framePosted_ = false;
    frame();
}

void RichTextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == frames_.timerId()) {
        frame();
    } else if (event->timerId() == blink_.timerId()) {
        constexpr int BlinksWhileIdle = 20;
        caretShown_ = ++blinks_ >= BlinksWhileIdle || !caretShown_;
        if (blinks_ >= BlinksWhileIdle) blink_.stop();
        if (const auto caret = caretRect(model_.Caret()))
            viewport()->update(caret->toAlignedRect().adjusted(-2, -2, 3, 2));
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void RichTextView::frame() {
    glide();
    dragBeyondEdges();
    announce();
    if (!dirty_ || !isVisible()) {
        frames_.stop();
        return;
    }
    holdSelection();
    settle();
    if (!frames_.isActive()) frames_.start(Frame, Qt::PreciseTimer, this);
}

void RichTextView::settle() {
    dirty_ = false;
    // A table of fonts or colours grows entry by entry: its rows are estimated once for all of them.
    if (std::exchange(headChanged_, false)) page_.headChanged();
    resynchronize();
    page_.setScale(zoom_, logicalDpiY());
    page_.setWidth(std::max(1, viewport()->width() - 2 * PageScroll::Margin));
    scroll_.setHeight(viewport()->height());
    const bool held = drag_ == Drag::Selecting;
    scroll_.settle(held);
    if (std::exchange(selectionChanged_, false)) {
        caretMoved();
        scroll_.settle(held);
    }
    updateScrollBar();
    if (scroll_.AtEnd()) scrolledUp_ = false;
    viewport()->update();
}

void RichTextView::updateScrollBar() {
    std::int64_t most = scroll_.MaxPosition();
    barShift_ = 0;
    while (most >> barShift_ > MaxBar) ++barShift_;
    movingBar_ = true;
    QScrollBar& bar = *verticalScrollBar();
    bar.setPageStep(std::max(1, viewport()->height() - lineStep()));
    bar.setSingleStep(lineStep());
    bar.setRange(0, static_cast<int>(most >> barShift_));
    bar.setValue(static_cast<int>(std::max<std::int64_t>(0, scroll_.Position()) >> barShift_));
    movingBar_ = false;
}

void RichTextView::barMoved(int value) {
    if (movingBar_) return;
    guard_.run("RichTextView", [&] {
        glide_ = 0;
        if (dirty_) settle();
        if (value >= verticalScrollBar()->maximum()) return scrollToEnd();
        scroll_.scrollTo(std::int64_t{value} << barShift_);
        scrolledUp_ = !scroll_.AtEnd();
        touch();
    });
}

void RichTextView::scrolled(std::int64_t pixels) {
    if (dirty_) settle();
    scroll_.scrollBy(pixels);
    scrolledUp_ = !scroll_.AtEnd();
    touch();
}

void RichTextView::scrollToEnd() {
    glide_ = 0;
    scrolledUp_ = false;
    scroll_.follow();
    touch();
}

void RichTextView::reveal(Place place) {
    if (dirty_) settle();
    scroll_.reveal(model_.Document().Within(place));
    scrolledUp_ = !scroll_.AtEnd();
    touch();
}

// A part of the way that is left, at least a pixel.
void RichTextView::glide() {
    if (glide_ == 0) return;
    const double share =
        std::abs(glide_) < 2 ? glide_ : std::trunc(glide_ * GlideShare + std::copysign(1, glide_));
    const std::int64_t before = scroll_.Position();
    scrolled(std::llround(share));
    glide_ -= share;
    if (std::abs(glide_) < 1 || scroll_.Position() == before) glide_ = 0;
}

int RichTextView::lineStep() {
    return page_.Style().metrics(page_.Style().Base().HalfPoints).LineHeight;
}

// ---- Events of the toolkit

// No exception reaches the toolkit.
bool RichTextView::event(QEvent* event) {
    bool done = false;
    guard_.run("RichTextView", [&] {
        switch (event->type()) {
            case QEvent::WindowBlocked:
            case QEvent::Hide:
            case QEvent::EnabledChange:
                drag_ = Drag::None;  // no release will come
                break;
            default:
                break;
        }
        if (event->type() == QEvent::ShortcutOverride && isOwnKey(static_cast<QKeyEvent*>(event))) {
            event->accept();
            done = true;
        } else {
            done = QAbstractScrollArea::event(event);
        }
    });
    return done;
}

bool RichTextView::viewportEvent(QEvent* event) {
    bool done = false;
    guard_.run("RichTextView", [&] { done = QAbstractScrollArea::viewportEvent(event); });
    return done;
}

void RichTextView::resizeEvent(QResizeEvent*) {
    touch();
}

void RichTextView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    touch();
}

void RichTextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) viewport()->update();
}

void RichTextView::setZoom(double zoom) {
    zoom = std::clamp(zoom, MinZoom, MaxZoom);
    if (zoom == zoom_) return;
    zoom_ = zoom;
    touch();
    ZoomChanged.raise(zoom_);
}

std::optional<QRectF> RichTextView::caretRect(Place place) {
    if (dirty_) settle();
    auto rect = scroll_.caretRect(place);
    if (rect) rect->translate(PageScroll::Margin, 0);
    return rect;
}

Place RichTextView::placeAt(QPointF point) {
    if (dirty_) settle();
    return scroll_.placeAt(point - QPointF(PageScroll::Margin, 0));
}

// ---- Painting

std::pair<Place, Place> RichTextView::selection() const {
    if (drag_ == Drag::Selecting) return std::minmax(dragAnchor_, dragCaret_);
    return std::minmax(model_.Anchor(), model_.Caret());
}

RowSelection RichTextView::selectionIn(std::uint64_t row) const {
    const auto [begin, end] = selection();
    if (row < begin.Paragraph || row > end.Paragraph) return {};
    const auto length = static_cast<std::uint32_t>(model_.Document().At(row).Text.size());
    RowSelection selected;
    selected.Begin = row == begin.Paragraph ? begin.Offset : 0;
    selected.End = row == end.Paragraph ? end.Offset : length;
    selected.PastEnd = row < end.Paragraph;
    return selected;
}

// The page is white on every desktop: documents bring colours that were chosen for it.
void RichTextView::paintEvent(QPaintEvent* event) {
    if (dirty_) settle();
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Qt::white);
    pictures_.beginFrame();
    RichPainter rows(painter, pictures_, QRectF(event->rect()));
    const auto group = !isEnabled() ? QPalette::Disabled : hasFocus() ? QPalette::Active : QPalette::Inactive;
    rows.setSelectionColors(palette().color(group, QPalette::Highlight),
                            palette().color(group, QPalette::HighlightedText));
    paintRows(rows);
    if (pictures_.Waiting()) touch();
}

void RichTextView::paintRows(RichPainter& painter) {
    for (const PageScroll::Visible& row : scroll_.Rows()) {
        painter.paintRow(page_.layout(row.Number), QPointF(PageScroll::Margin, row.Top),
                         selectionIn(row.Number));
    }
    if (!editable() || !hasFocus() || !caretShown_) return;
    if (auto caret = caretRect(model_.Caret())) {
        caret->setWidth(std::max(1, style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this)));
        painter.paintCaret(*caret);
    }
}

}  // namespace talvora
