#include "desktop/RichTextAccessible.h"

#include <QPoint>
#include <QRect>
#include <algorithm>
#include <optional>

#include "desktop/QtText.h"

namespace talvora {

namespace {

QAccessibleInterface* make(const QString&, QObject* object) {
    auto* view = dynamic_cast<RichTextView*>(object);
    return view != nullptr ? new RichTextAccessible(view) : nullptr;
}

}  // namespace

RichTextAccessible::RichTextAccessible(RichTextView* view)
    : QAccessibleWidget(view, QAccessible::EditableText) {}

void RichTextAccessible::install() {
    static const bool installed = (QAccessible::installFactory(make), true);
    Q_UNUSED(installed);
}

void* RichTextAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State RichTextAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.multiLine = true;
    state.selectableText = true;
    state.readOnly = view().Model().Locked;
    state.editable = !view().Model().Locked;
    return state;
}

QString RichTextAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value) return text(0, characterCount());
    return QAccessibleWidget::text(kind);
}

Place RichTextAccessible::placeAt(int position) const {
    return document().PlaceAt(static_cast<std::size_t>(std::max(0, position)));
}

QString RichTextAccessible::text(int begin, int end) const {
    return toQString(document().Text(placeAt(begin), placeAt(end))).replace(QChar(LineBreak), QChar('\n'));
}

int RichTextAccessible::characterCount() const {
    return static_cast<int>(document().TextLength());
}

int RichTextAccessible::cursorPosition() const {
    return static_cast<int>(document().PositionOf(view().Model().Caret()));
}

void RichTextAccessible::setCursorPosition(int position) {
    view().HandsGuard().run("RichTextView",
                            [&] { view().Model().userSelects(placeAt(position), placeAt(position)); });
}

void RichTextAccessible::selection(int index, int* begin, int* end) const {
    *begin = *end = 0;
    if (index != 0 || selectionCount() == 0) return;
    const RichTextBox& model = view().Model();
    *begin = static_cast<int>(document().PositionOf(std::min(model.Anchor(), model.Caret())));
    *end = static_cast<int>(document().PositionOf(std::max(model.Anchor(), model.Caret())));
}

int RichTextAccessible::selectionCount() const {
    return view().Model().Anchor() == view().Model().Caret() ? 0 : 1;
}

void RichTextAccessible::addSelection(int begin, int end) {
    setSelection(0, begin, end);
}

void RichTextAccessible::removeSelection(int index) {
    if (index == 0) setCursorPosition(cursorPosition());
}

void RichTextAccessible::setSelection(int index, int begin, int end) {
    if (index != 0) return;
    view().HandsGuard().run("RichTextView",
                            [&] { view().Model().userSelects(placeAt(begin), placeAt(end)); });
}

QRect RichTextAccessible::characterRect(int offset) const {
    std::optional<QRectF> left;
    std::optional<QRectF> right;
    view().HandsGuard().run("RichTextView", [&] {
        left = view().caretRect(placeAt(offset));
        right = view().caretRect(placeAt(offset + 1));
    });
    if (!left) return {};
    QRectF rect = *left;
    if (right && right->top() == left->top()) rect.setRight(right->left());
    const QRect aligned = rect.toAlignedRect();
    return {view().viewport()->mapToGlobal(aligned.topLeft()), aligned.size()};
}

int RichTextAccessible::offsetAtPoint(const QPoint& point) const {
    const QPoint inside = view().viewport()->mapFromGlobal(point);
    int offset = -1;
    view().HandsGuard().run("RichTextView", [&] {
        offset = static_cast<int>(document().PositionOf(view().placeAt(QPointF(inside))));
    });
    return offset;
}

void RichTextAccessible::scrollToSubstring(int begin, int) {
    view().HandsGuard().run("RichTextView", [&] { view().reveal(placeAt(begin)); });
}

QString RichTextAccessible::attributes(int offset, int* begin, int* end) const {
    const Place place = placeAt(offset);
    const Paragraph& paragraph = document().At(place.Paragraph);
    const auto start = offset - static_cast<int>(place.Offset);
    *begin = start;
    *end = start + static_cast<int>(paragraph.Text.size());
    const auto behind = std::upper_bound(paragraph.Runs.begin(), paragraph.Runs.end(), place.Offset,
                                         [](std::uint32_t at, const Run& run) { return at < run.Begin; });
    if (behind == paragraph.Runs.begin()) return {};
    const Run& run = *(behind - 1);
    *begin = start + static_cast<int>(run.Begin);
    if (behind != paragraph.Runs.end()) *end = start + static_cast<int>(behind->Begin);
    QString all = QStringLiteral("font-size:%1pt;").arg(run.Format.HalfPoints / 2.0);
    if (run.Format.Bold) all += QStringLiteral("font-weight:bold;");
    if (run.Format.Italic) all += QStringLiteral("font-style:italic;");
    if (run.Format.Underline) all += QStringLiteral("text-underline-style:solid;");
    if (run.Format.StrikeThru) all += QStringLiteral("text-line-through-type:single;");
    return all;
}

}  // namespace talvora
