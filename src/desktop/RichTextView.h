#pragma once
// The widget of a RichTextBox: read-only while the model is locked, an editor otherwise. It shows what the
// model holds and passes the user's hands on. A change of the model only marks it; at most once a frame it
// lays out what is in sight and paints. Nothing runs while nothing happens.
//
// A locked view whose caret code has put to the end shows the end and stays there; while the reader has
// scrolled up, or holds a selection with the mouse, nothing moves under his eyes.
//
// A handler of the model's events may run the loop, but must not delete the view it comes from at once.

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <optional>
#include <utility>

#include "desktop/PageScroll.h"
#include "desktop/PictureCache.h"
#include "desktop/RichPage.h"
#include "platform/Guard.h"
#include "platform/rich/RichTextBox.h"

class QMenu;

namespace talvora {

class RichPainter;
struct RowSelection;

class RichTextView final : public QAbstractScrollArea {
  public:
    // What is handed in outlives the view.
    RichTextView(RichTextBox& model, Clipboard& clipboard, Guard& guard, QWidget* parent = nullptr);
    ~RichTextView() override;

    RichTextBox& Model() { return model_; }
    const RichTextBox& Model() const { return model_; }

    double Zoom() const { return zoom_; }
    void setZoom(double zoom);  // from MinZoom to MaxZoom
    static constexpr double MinZoom = 0.5;
    static constexpr double MaxZoom = 3.0;
    Event<double> ZoomChanged;  // by whomever

    // Whether the wheel glides; it doesn't where the desktop is set to show no animations.
    void setGliding(bool on) { gliding_ = on; }

    // Brings layout and scroll bar in line with the model now, instead of with the next frame.
    void settle();
    // One frame, as its timer runs it: gliding and dragging go on, changes are laid out and painted.
    void frame();
    // In the viewport; nothing for a place that isn't in sight.
    std::optional<QRectF> caretRect(Place place);
    Place placeAt(QPointF point);
    void scrollToEnd();
    // What calls the view past its events runs in here.
    Guard& HandsGuard() const { return guard_; }
    // Scrolls as little as is needed for the place to be seen.
    void reveal(Place place);

    QSize sizeHint() const override { return {480, 320}; }
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void customEvent(QEvent* event) override;
    void scrollContentsBy(int, int) override {}
    bool focusNextPrevChild(bool next) override;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

  private:
    bool editable() const { return !model_.Locked; }

    // ---- Following the model
    void bind();
    void lockedChanged();
    void documentChanged(const DocumentChange& change);
    void resynchronize();
    void caretMoved();
    void announce();

    // ---- Frames
    void touch();
    void wantFrames();
    void updateScrollBar();
    void scrolled(std::int64_t pixels);
    void barMoved(int value);
    void glide();
    int lineStep();

    // ---- Painting
    std::pair<Place, Place> selection() const;
    RowSelection selectionIn(std::uint64_t row) const;
    void paintRows(RichPainter& painter);

    // ---- Hands
    void holdSelection();
    void dragTo(QPointF point);
    void dragBeyondEdges();
    void pastePrimary(Place place);
    void offerPrimary() const;
    void selectWord(Place place);
    bool scrollKey(QKeyEvent* event);
    bool selectKey(QKeyEvent* event);
    bool moveKey(QKeyEvent* event);
    bool editKey(QKeyEvent* event);
    bool commonKey(QKeyEvent* event);
    bool isOwnKey(QKeyEvent* event) const;
    void type(const QString& text);
    void eraseWord(bool backward);
    void moveTo(Place place, bool select);
    Place vertical(Place from, int lines);
    Place pageAway(Place from, int direction);
    Place moved(int key, Place from);
    void putPreedit(QInputMethodEvent* event);
    void restartCaret();
    void fillMenu(QMenu& menu);

    RichTextBox& model_;
    Clipboard& clipboard_;
    Guard& guard_;
    RichPage page_;
    PageScroll scroll_;
    PictureCache pictures_;
    Subscriptions on_;

    QBasicTimer frames_;
    bool framePosted_ = false;
    bool dirty_ = true;
    bool headChanged_ = false;
    bool selectionChanged_ = true;
    bool scrolledUp_ = false;  // by the user
    bool movingBar_ = false;
    int barShift_ = 0;  // pixels of the page to a step of the scroll bar, as a power of two
    std::optional<std::uint64_t> announceFrom_;

    double zoom_ = 1;
    bool gliding_ = true;
    double glide_ = 0;  // pixels still to go

    enum class Drag { None, Armed, Selecting };
    Drag drag_ = Drag::None;
    Qt::MouseButton dragButton_ = Qt::NoButton;  // that began it, and ends it
    Place dragAnchor_;
    Place dragCaret_;
    QPointF dragPoint_;

    std::optional<double> goalX_;  // where the caret would be but for short lines
    QBasicTimer blink_;
    int blinks_ = 0;
    bool caretShown_ = true;
};

}  // namespace talvora
