#pragma once
// What a screen reader sees of a RichTextView: its text, caret and selection. Positions are the model's.

#include <QAccessibleWidget>

#include "desktop/RichTextView.h"

namespace talvora {

class RichTextAccessible final : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit RichTextAccessible(RichTextView* view);

    // Makes the toolkit use it for every RichTextView.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;

    QString text(int begin, int end) const override;
    int characterCount() const override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    void selection(int index, int* begin, int* end) const override;
    int selectionCount() const override;
    void addSelection(int begin, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int begin, int end) override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int begin, int end) override;
    QString attributes(int offset, int* begin, int* end) const override;

  private:
    RichTextView& view() const { return *static_cast<RichTextView*>(widget()); }
    const RichDocument& document() const { return view().Model().Document(); }
    Place placeAt(int position) const;
};

}  // namespace talvora
