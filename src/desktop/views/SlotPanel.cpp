#include "desktop/views/SlotPanel.h"

#include <QFrame>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/Binding.h"
#include "desktop/FormView.h"
#include "desktop/QtText.h"

namespace talvora {

class SlotView final : public QWidget {
  public:
    SlotView(Container& slot, const PluginViews& views, QWidget* parent);
    ~SlotView() override;

  private:
    void showCaption();
    void showPlugin();

    Container& slot_;
    const PluginViews& makers_;
    std::shared_ptr<ChatPlugin> shown_;  // lives as long as its view
    QWidget* plugin_ = nullptr;          // that view, if it has one
    QToolButton* bar_;
    QFrame* holder_;
    Subscriptions on_;
};

SlotView::SlotView(Container& slot, const PluginViews& views, QWidget* parent)
    : QWidget(parent), slot_(slot), makers_(views), bar_(new QToolButton(this)), holder_(new QFrame(this)) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(bar_);
    rows->addWidget(holder_);
    bar_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    bar_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar_->setAutoRaise(true);
    connect(bar_, &QToolButton::clicked, this, [this] { slot_.Label1.Click.raise(); });
    holder_->setFrameShape(QFrame::StyledPanel);

    auto* failed = new QLabel(holder_);
    auto* inside = new QVBoxLayout(holder_);
    inside->addWidget(failed);
    attach(on_, slot_.Label2, *failed);

    showCaption();
    on_ += slot_.Label1.Caption.Changed.connect([this](const std::string&) { showCaption(); });
    on_ += slot_.Image2.Picture.Changed.connect([this](int) { showCaption(); });
    on_ += slot_.Image2.Visible.Changed.connect([this](bool) { showCaption(); });
    on_ += slot_.Label1.Enabled.Changed.connect([this](bool) { showCaption(); });
    on_ += slot_.Label1.Loaded.Changed.connect([this](bool) { showCaption(); });
    on_ += slot_.Expanded.Changed.connect([this](bool) { showCaption(); });
    on_ += slot_.Picture1.Height.Changed.connect([this](int) { showCaption(); });
    attachVisible(on_, slot_.Visible, *this);
    showPlugin();
    on_ += slot_.Label1.Loaded.Changed.connect([this](bool) { showPlugin(); });
}

SlotView::~SlotView() {
    delete plugin_;
}

// A slot gets a plug-in once, and keeps it.
void SlotView::showPlugin() {
    if (shown_ != nullptr || slot_.Client() == nullptr) return;
    shown_ = slot_.Client();
    plugin_ = makers_.Make(*shown_, holder_);
    if (plugin_ == nullptr) return;
    holder_->layout()->addWidget(plugin_);
    showCaption();
}

void SlotView::showCaption() {
    bar_->setText(caption(slot_.Label1.Caption.get()));
    bar_->setEnabled(slot_.Label1.Enabled);
    const bool open = slot_.Image2.Picture == Container::imgUp;
    bar_->setArrowType(!slot_.Image2.Visible ? Qt::NoArrow : open ? Qt::UpArrow : Qt::DownArrow);
    QFont font;
    font.setItalic(!slot_.Label1.Loaded);
    bar_->setFont(font);
    holder_->setVisible(slot_.Expanded);
    const int height = std::max(slot_.Picture1.Height / TwipsPerPixel, fontMetrics().height() * 2);
    holder_->setMinimumHeight(height);
    // A view of its own knows better than the plug-in how much this desktop's letters need.
    holder_->setMaximumHeight(plugin_ != nullptr ? QWIDGETSIZE_MAX : height);
}

SlotPanel::SlotPanel(PluginSlots& slots_, Property<int>& width, const PluginViews& views, QWidget* parent)
    : QWidget(parent), model_(slots_), makers_(views), width_(width), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->addStretch(1);
    for (int i = 0; i < model_.Count(); ++i) add(i);
    on_ += model_.plugins.Loaded.connect([this](int index) { add(index); });
    on_ += model_.plugins.Unloaded.connect([this](int index) {
        visible_.erase(index);
        views_.erase(index);
    });
    showSlots();
    on_ += width_.Changed.connect([this](int) { showSlots(); });
}

SlotPanel::~SlotPanel() = default;

void SlotPanel::add(int index) {
    auto view = std::make_unique<SlotView>(model_.plugins(index), makers_, this);
    rows_->insertWidget(rows_->count() - 1, view.get());
    views_[index] = std::move(view);
    visible_[index] = model_.plugins(index).Visible.Changed.connect([this](bool) {
        showSlots();
        SlotsChanged.raise();
    });
}

bool SlotPanel::HasSlots() const {
    for (int i = 0; i < model_.Count(); ++i) {
        if (model_.plugins(i).Visible) return true;
    }
    return false;
}

void SlotPanel::showSlots() {
    const int pixels = width_ / TwipsPerPixel;
    setVisible(pixels > 0 && HasSlots());
    setFixedWidth(std::max(pixels, 1));
}

}  // namespace talvora
