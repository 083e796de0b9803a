#include "desktop/views/PopupView.h"

#include <QEvent>
#include <QImage>
#include <QLabel>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Binding.h"
#include "desktop/Follow.h"
#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "notify/BWPic.h"

namespace talvora {

namespace {

constexpr QSize BarSize{frmPopup::BarWidth / TwipsPerPixel, 320};
constexpr int LongestCaption = 200;

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

// Tells the model that the pointer has come, and that it has gone.
class Hover final : public QObject {
  public:
    Hover(HButton& model, QObject* widget) : QObject(widget), model_(model) {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Enter) model_.Label2_MouseMove();
        if (event->type() == QEvent::Leave) model_.HOut();
        return false;
    }

  private:
    HButton& model_;
};

}  // namespace

PopupView::PopupView(frmPopup& form, const ViewSite& site)
    : FormView(form, site, "Bar", BarSize), form_(form) {
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* content = new QWidget(this);
    auto* rows = new QVBoxLayout(content);
    rows->setSpacing(0);
    addSection(form_.Label3, form_.Wins, *rows);
    addSection(form_.Label1, form_.WinNotice, *rows);
    rows->addStretch(1);
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    on_ += form_.Unloaded.connect([this] { hands_.clear(); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

void PopupView::addSection(Label& heading, frmPopup::Buttons& buttons, QVBoxLayout& rows) {
    auto* label = new QLabel(this);
    label->setFont(theme::smallFont());
    attach(on_, heading, *label);
    rows.addWidget(label);
    auto* box = new QWidget(this);
    auto* inner = new QVBoxLayout(box);
    inner->setContentsMargins(0, 0, 0, theme::Medium);
    inner->setSpacing(0);
    rows.addWidget(box);
    for (int index = 0; index <= buttons.UBound(); ++index) addButton(buttons, index, *inner);
    on_ += buttons.Loaded.connect([this, &buttons, inner](int index) { addButton(buttons, index, *inner); });
    on_ += buttons.Unloaded.connect([this, &buttons](int index) { drop({&buttons, index}); });
}

void PopupView::addButton(frmPopup::Buttons& buttons, int index, QVBoxLayout& rows) {
    HButton& model = buttons(index);
    auto* button = new QPushButton(rows.parentWidget());
    button->setFlat(true);
    button->setMinimumWidth(1);
    button->setStyleSheet(QStringLiteral("text-align: left; padding: 4px"));
    Hands& hands = hands_[{&buttons, index}];
    hands.Button = button;
    hands.Hover = new Hover(model, button);
    follow(hands.On, model.Caption, [button](const std::string& text) {
        button->setText(oneLine(text, LongestCaption).replace(QLatin1Char('&'), QStringLiteral("&&")));
    });
    const auto paint = [button, &model] {
        button->setIcon(barIcon(model.imgActive.Visible ? model.Image : model.InactiveImage));
    };
    paint();
    hands.On += model.imgInactive.Visible.Changed.connect([paint](bool) { paint(); });
    hands.On += model.InactiveImage.Changed.connect([paint](int) { paint(); });
    follow(hands.On, model.Visible, [button](bool visible) { button->setVisible(visible); });
    connect(button, &QPushButton::clicked, button, [&model] { model.Click.raise(); });
    rows.addWidget(button);
}

// The model is gone already.
void PopupView::drop(const Place& place) {
    const auto found = hands_.find(place);
    if (found == hands_.end()) return;
    delete found->second.Hover;
    if (QPushButton* button = found->second.Button) {
        button->disconnect();
        button->hide();
        button->deleteLater();
    }
    hands_.erase(found);
}

}  // namespace talvora
