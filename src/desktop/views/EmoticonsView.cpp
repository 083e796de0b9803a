#include "desktop/views/EmoticonsView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "desktop/PictureCache.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr int CellSize = 32;

std::shared_ptr<const Picture> firstPicture(const RichDocument& document) {
    for (std::uint64_t number = document.FirstNumber(); number < document.EndNumber(); ++number) {
        const Paragraph& paragraph = document.At(number);
        if (!paragraph.Pictures.empty()) return paragraph.Pictures.front();
    }
    return nullptr;
}

}  // namespace

// A cell that the user presses; its picture is decoded when it is first painted.
class EmoticonsView::CellButton final : public QAbstractButton {
  public:
    CellButton(frmEmoticons::Cell& model, QWidget* parent) : QAbstractButton(parent), model_(model) {
        setFixedSize(CellSize, CellSize);
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        on_ += model_.Change.connect([this] { changed(); });
        on_ += model_.Tag.Changed.connect([this](const std::string&) { changed(); });
        connect(this, &QAbstractButton::clicked, this, [this] { model_.MouseUp.raise(MouseButton::Left); });
        changed();
    }

    bool IsEmpty() const { return text().isEmpty(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QColor ground = palette().color(QPalette::Highlight);
        ground.setAlpha(isDown() ? 120 : 60);
        if (!IsEmpty() && (isDown() || underMouse() || hasFocus())) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight)) : QPen(Qt::NoPen));
            painter.setBrush(ground);
            painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);
        }
        if (const auto picture = firstPicture(model_.Document())) {
            paintPicture(painter, picture);
        } else {
            painter.setPen(palette().color(QPalette::WindowText));
            painter.drawText(rect(), Qt::AlignCenter, text());
        }
    }

  private:
    void changed() {
        image_ = {};
        setText(toQString(model_.Tag.get()));
        setAccessibleName(IsEmpty() ? QStringLiteral("Empty") : text());
        setToolTip(theme::plainToolTip(text()));
        update();
    }
    void paintPicture(QPainter& painter, const std::shared_ptr<const Picture>& picture) {
        if (image_.isNull()) image_ = decodePicture(*picture);
        QSize size = QSize(picture->WidthTwips, picture->HeightTwips) / TwipsPerPixel;
        const QSize room(CellSize - 2 * theme::Small, CellSize - 2 * theme::Small);
        if (size.width() > room.width() || size.height() > room.height()) {
            size.scale(room, Qt::KeepAspectRatio);
        }
        QRect place({}, size);
        place.moveCenter(rect().center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, image_);
    }

    frmEmoticons::Cell& model_;
    QImage image_;
    Subscriptions on_;
};

EmoticonsView::EmoticonsView(frmEmoticons& form, const ViewSite& site)
    : FormView(form, site, "Emoticons", {1, 1}), form_(form), bar_(new QScrollBar(Qt::Vertical, this)) {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    setWindowTitle(tr("Emoticons"));
    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    for (int i = 0; i < frmEmoticons::Cells; ++i) {
        auto* cell = new CellButton(form_.Ico(i), this);
        cell->installEventFilter(this);
        cells_[static_cast<std::size_t>(i)] = cell;
        grid->addWidget(cell, i / Columns, i % Columns);
    }
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(theme::Small, theme::Small, theme::Small, theme::Small);
    row->setSpacing(theme::Small);
    row->addLayout(grid);
    row->addWidget(bar_);
    row->setSizeConstraint(QLayout::SetFixedSize);
    bindBar();
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

void EmoticonsView::bindBar() {
    VScrollBar& model = form_.VScroll1;
    const auto range = [this, &model](int) {
        bar_->setRange(model.Min, std::max(model.Min.get(), model.Max.get()));
    };
    const auto enable = [this](bool enabled) { bar_->setVisible(enabled); };
    on_ += model.Min.Changed.connect(range);
    on_ += model.Max.Changed.connect(range);
    on_ += model.Enabled.Changed.connect(enable);
    on_ += model.Value.Changed.connect([this](int value) {
        bar_->setValue(value);
        // The last page may be shorter.
        const auto* cell = dynamic_cast<CellButton*>(focusWidget());
        if (cell != nullptr && cell->IsEmpty()) focusCell(0);
    });
    bar_->setSingleStep(1);
    bar_->setPageStep(1);
    bar_->setFocusPolicy(Qt::NoFocus);
    bar_->setAccessibleName(tr("Page"));
    range(0);
    enable(model.Enabled);
    bar_->setValue(model.Value);
    connect(bar_, &QScrollBar::valueChanged, this, [this, &model](int value) {
        if (value == model.Value) return;
        if (bar_->isSliderDown()) {
            model.userDrags(value);
        } else {
            model.Value = value;
        }
    });
    connect(bar_, &QScrollBar::sliderReleased, this, [&model] { model.userLetsGo(); });
}

// Above the place where it was asked for, as that is in the last row of a window; below it where the screen
// has no room above.
void EmoticonsView::showEvent(QShowEvent* event) {
    FormView::showEvent(event);
    if (event->spontaneous()) return;
    const QPoint wanted(form_.Left / TwipsPerPixel, form_.Top / TwipsPerPixel);
    const QScreen* where = QGuiApplication::screenAt(wanted);
    const QRect room = (where != nullptr ? where : screen())->availableGeometry();
    const QSize size = sizeHint();
    QPoint at(wanted.x(), wanted.y() - size.height());
    if (at.y() < room.top()) at.setY(wanted.y());
    at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())));
    at.setY(std::clamp(at.y(), room.top(), std::max(room.top(), room.bottom() + 1 - size.height())));
    move(at);
    focusCell(0);
}

void EmoticonsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void EmoticonsView::wheelEvent(QWheelEvent* event) {
    if (bar_->isVisible()) QCoreApplication::sendEvent(bar_, event);
}

bool EmoticonsView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            static_cast<CellButton*>(watched)->click();
            return true;
        }
        if (walk(watched, key)) return true;
    }
    return FormView::eventFilter(watched, event);
}

bool EmoticonsView::walk(const QObject* from, int key) {
    const auto at = static_cast<int>(std::find(cells_.begin(), cells_.end(), from) - cells_.begin());
    switch (key) {
        case Qt::Key_Left:
            focusCell(at - 1);
            return true;
        case Qt::Key_Right:
            focusCell(at + 1);
            return true;
        case Qt::Key_Up:
            focusCell(at - Columns);
            return true;
        case Qt::Key_Down:
            focusCell(at + Columns);
            return true;
        case Qt::Key_PageUp:
            if (bar_->isVisible()) bar_->setValue(bar_->value() - 1);
            return true;
        case Qt::Key_PageDown:
            if (bar_->isVisible()) bar_->setValue(bar_->value() + 1);
            return true;
        default:
            return false;
    }
}

void EmoticonsView::focusCell(int index) {
    if (index < 0 || index >= frmEmoticons::Cells) return;
    CellButton* cell = cells_[static_cast<std::size_t>(index)];
    if (!cell->IsEmpty()) cell->setFocus(Qt::TabFocusReason);
}

}  // namespace talvora
