#include "desktop/views/BarSection.h"

#include <QEvent>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/FormView.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "notify/BWPic.h"

namespace talvora {

namespace {

constexpr int LongestBarCaption = 200;

QIcon greyed(const QIcon& icon) {
    QImage image = icon.pixmap(theme::SmallIcon).toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            image.setPixel(x, y, (pixel & 0xFF000000U) | BWPic(pixel & 0x00FFFFFFU));
        }
    }
    return QPixmap::fromImage(image);
}

QIcon barIcon(int picture) {
    const bool isGrey = picture > BarPicture::Count;
    const int coloured = isGrey ? picture - BarPicture::Count : picture;
    const QIcon icon =
        theme::icon(coloured == BarPicture::Channel ? QStringLiteral("channel") : QStringLiteral("private"));
    return isGrey ? greyed(icon) : icon;
}

// Draws a button as its model is now: the highlight on its way, the picture, and the caption as far as there
// is room.
class HoverFace final : public QPushButton {
  public:
    HoverFace(HButton& model, QWidget* parent) : QPushButton(parent), model_(&model) {
        setFixedHeight(frmPopup::RowHeight / TwipsPerPixel);
        setMinimumWidth(1);
    }
    void Release() { model_ = nullptr; }
    void Write(const QString& caption) {
        caption_ = caption;
        setAccessibleName(caption);
        setToolTip(theme::plainToolTip(caption));
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        if (model_ == nullptr) return;
        QPainter painter(this);
        drawContent(painter, palette().color(QPalette::Text));
        const int left = model_->Label1.Left * width() / std::max(model_->Width.get(), 1);
        if (left < width() && !model_->Shape1) {
            // The light band bears dark letters, whatever the palette.
            const QRect band(left, 0, width() - left, height());
            painter.setClipRect(band);
            painter.fillRect(band, bandColor());
            drawContent(painter, Qt::black);
            painter.setClipping(false);
        }
        if (hasFocus()) {
            QStyleOptionFocusRect option;
            option.initFrom(this);
            option.rect = rect().adjusted(1, 1, -1, -1);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
        }
    }

  private:
    static QColor bandColor() {
        const Colour colour = HButton::Highlight;
        return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                static_cast<int>(colour >> 16 & 0xFF)};
    }
    void drawContent(QPainter& painter, const QColor& letters) {
        const int side = theme::SmallIcon;
        const QRect picture(theme::Large, (height() - side) / 2, side, side);
        QPixmap drawn = icon().pixmap(side);
        QPainter ink(&drawn);
        ink.setCompositionMode(QPainter::CompositionMode_SourceIn);
        if (letters != palette().color(QPalette::Text)) ink.fillRect(drawn.rect(), letters);
        ink.end();
        painter.drawPixmap(picture, drawn);
        const QRect words = rect().adjusted(picture.right() + theme::Medium, 0, -theme::Large, 0);
        painter.setPen(letters);
        painter.drawText(words, Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(caption_, Qt::ElideRight, words.width()));
    }

    HButton* model_;  // null as soon as it goes
    QString caption_;
};

// Tells the model that the pointer has come, and perhaps that it has gone.
class Hover final : public QObject {
  public:
    Hover(HButton& model, QObject* widget, BarSection::Cooling cooling)
        : QObject(widget), model_(model), cooling_(cooling) {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Enter) model_.Label2_MouseMove();
        if (event->type() == QEvent::Leave && cooling_ == BarSection::Cooling::ByView) model_.HOut();
        return false;
    }

  private:
    HButton& model_;
    BarSection::Cooling cooling_;
};

}  // namespace

BarSection::BarSection(frmPopup::Buttons& buttons, Cooling cooling, QWidget* parent)
    : QWidget(parent), buttons_(buttons), cooling_(cooling), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    for (int index = 0; index <= buttons_.UBound(); ++index) addButton(index);
    on_ += buttons_.Loaded.connect([this](int index) { addButton(index); });
    on_ += buttons_.Unloaded.connect([this](int index) { drop(index); });
}

QLabel* BarSection::Heading(Label& model, Subscriptions& on, QWidget* parent) {
    auto* heading = new QLabel(parent);
    heading->setFont(theme::smallFont());
    heading->setFixedHeight(frmPopup::HeadHeight / TwipsPerPixel);
    attach(on, model, *heading);
    return heading;
}

void BarSection::addButton(int index) {
    HButton& model = buttons_(index);
    auto* button = new HoverFace(model, this);
    Hands& hands = hands_[index];
    hands.Button = button;
    hands.Hover = new Hover(model, button, cooling_);
    follow(hands.On, model.Caption,
           [button](const std::string& text) { button->Write(oneLine(text, LongestBarCaption)); });
    const auto paint = [button, &model] {
        button->setIcon(barIcon(model.imgActive.Visible ? model.Image : model.InactiveImage));
        button->update();
    };
    paint();
    hands.On += model.imgInactive.Visible.Changed.connect([paint](bool) { paint(); });
    hands.On += model.InactiveImage.Changed.connect([paint](int) { paint(); });
    hands.On += model.Label1.Left.Changed.connect([button](int) { button->update(); });
    hands.On += model.Shape1.Changed.connect([button](bool) { button->update(); });
    follow(hands.On, model.Visible, [button](bool visible) { button->setVisible(visible); });
    connect(button, &QPushButton::clicked, button, [&model] { model.Click.raise(); });
    rows_->addWidget(button);
}

// The model is gone already.
void BarSection::drop(int index) {
    const auto found = hands_.find(index);
    if (found == hands_.end()) return;
    delete found->second.Hover;
    if (auto* button = static_cast<HoverFace*>(found->second.Button.data())) {
        button->Release();
        button->disconnect();
        button->hide();
        button->deleteLater();
    }
    hands_.erase(found);
}

void BarSection::Release() {
    on_.clear();
    while (!hands_.empty()) drop(hands_.begin()->first);
}

bool BarSection::TakeFocus() {
    if (hands_.empty() || !buttons_(0).Visible) return false;
    hands_.begin()->second.Button->setFocus(Qt::TabFocusReason);
    return true;
}

}  // namespace talvora
