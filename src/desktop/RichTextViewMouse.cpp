// The mouse on a RichTextView: selecting, scrolling, and what the model hears of buttons.

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <optional>

#include "desktop/CaretMoves.h"
#include "desktop/QtText.h"
#include "desktop/RichTextView.h"

namespace talvora {

namespace {

constexpr double WheelZoomStep = 1.1;
constexpr double WheelNotch = 120;

std::optional<MouseButton> modelButton(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return MouseButton::Left;
        case Qt::RightButton:
            return MouseButton::Right;
        case Qt::MiddleButton:
            return MouseButton::Middle;
        default:
            return std::nullopt;
    }
}

}  // namespace

void RichTextView::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (drag_ != Drag::None) return;
    glide_ = 0;
    goalX_.reset();
    const Place place = placeAt(event->position());
    dragPoint_ = event->position();
    dragAnchor_ = dragCaret_ = place;
    dragButton_ = event->button();
    if (event->button() == Qt::LeftButton) {
        if (event->modifiers() & Qt::ShiftModifier) dragAnchor_ = model_.Anchor();
        drag_ = Drag::Selecting;
        model_.userSelects(dragAnchor_, dragCaret_);
        restartCaret();
    } else if (event->button() == Qt::RightButton) {
        // In a locked view the right button selects too once it is moved; a mere click leaves what is
        // selected.
        if (!editable()) drag_ = Drag::Armed;
        const auto [begin, end] = selection();
        if (editable() && (place < begin || place > end)) model_.userSelects(place, place);
    }
}

void RichTextView::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ == Drag::Armed) {
        const QPointF way = event->position() - dragPoint_;
        if (way.manhattanLength() < QApplication::startDragDistance()) return;
        drag_ = Drag::Selecting;
    }
    if (drag_ != Drag::Selecting) return;
    dragTo(event->position());
    if (dragPoint_.y() < 0 || dragPoint_.y() > viewport()->height()) wantFrames();
}

void RichTextView::dragTo(QPointF point) {
    dragPoint_ = point;
    const QPointF inside(point.x(), std::clamp(point.y(), 0.0, std::max(0.0, viewport()->height() - 1.0)));
    dragCaret_ = placeAt(inside);
    holdSelection();
}

// Beyond the upper or lower edge the page moves, the faster the farther.
void RichTextView::dragBeyondEdges() {
    if (drag_ != Drag::Selecting) return;
    const double below = dragPoint_.y() - viewport()->height();
    const double beyond = dragPoint_.y() < 0 ? dragPoint_.y() : std::max(0.0, below);
    if (beyond == 0) return;
    scrolled(std::llround(std::clamp(beyond * 0.4, -60.0, 60.0) + std::copysign(2, beyond)));
    dragTo(dragPoint_);
}

// Code that writes the document meanwhile takes the selection away: as long as a button is held, it is the
// user's.
void RichTextView::holdSelection() {
    if (drag_ != Drag::Selecting) return;
    dragAnchor_ = model_.Document().Within(dragAnchor_);
    dragCaret_ = model_.Document().Within(dragCaret_);
    if (model_.Anchor() == dragAnchor_ && model_.Caret() == dragCaret_) return;
    model_.userSelects(dragAnchor_, dragCaret_);
}

void RichTextView::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == dragButton_) {
        if (drag_ == Drag::Selecting) {
            holdSelection();
            offerPrimary();
        }
        drag_ = Drag::None;
        touch();
    }
    const auto button = modelButton(event->button());
    if (!button) return;
    if (*button == MouseButton::Middle && editable()) pastePrimary(placeAt(event->position()));
    model_.MouseUp.raise(*button);
}

void RichTextView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton) return mousePressEvent(event);
    const Place place = placeAt(event->position());
    drag_ = Drag::None;
    model_.userSelects(place, place);
    if (!model_.DblClick.hasHandlers()) return selectWord(model_.Caret());
    model_.DblClick.raise();
}

void RichTextView::selectWord(Place place) {
    const RichDocument& document = model_.Document();
    Place begin = wordLeft(document, characterRight(document, place));
    if (begin.Paragraph != place.Paragraph) begin = place;
    Place end = wordRight(document, begin);
    if (end.Paragraph != place.Paragraph) end = place;
    const std::string& text = document.At(place.Paragraph).Text;
    while (end.Offset > begin.Offset + 1 && text[end.Offset - 1] == ' ') --end.Offset;
    model_.userSelects(begin, end);
    offerPrimary();
}

void RichTextView::offerPrimary() const {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (!clipboard.supportsSelection() || model_.Anchor() == model_.Caret()) return;
    QString text = toQString(model_.SelText());
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QChar(LineBreak), QChar('\n'));
    clipboard.setText(text, QClipboard::Selection);
}

void RichTextView::pastePrimary(Place place) {
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    if (!clipboard.supportsSelection()) return;
    const std::string text =
        fromQString(clipboard.text(QClipboard::Selection).left(RichTextBox::MaxTextByHand));
    model_.userSelects(place, place);
    model_.userTypes(text);
}

void RichTextView::wheelEvent(QWheelEvent* event) {
    event->accept();
    const double notches = event->angleDelta().y() / WheelNotch;
    if (event->modifiers() & Qt::ControlModifier) {
        setZoom(zoom_ * std::pow(WheelZoomStep, notches));
    } else if (!event->pixelDelta().isNull()) {
        scrolled(-event->pixelDelta().y());
    } else {
        glide_ -= notches * QApplication::wheelScrollLines() * lineStep();
        if (!gliding_) scrolled(std::llround(std::exchange(glide_, 0)));
        wantFrames();
    }
}

}  // namespace talvora
