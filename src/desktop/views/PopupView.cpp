#include "desktop/views/PopupView.h"

#include <QLabel>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/Follow.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr QSize BarSize{frmPopup::BarWidth / TwipsPerPixel, 320};

}  // namespace

PopupView::PopupView(frmPopup& form, const ViewSite& site) : FormView(form, site, "Bar", BarSize) {
    setWindowIcon(theme::icon(QStringLiteral("app")));
    auto* content = new QWidget(this);
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, theme::Small, 0, theme::Small);
    rows->setSpacing(0);
    auto* wins = new BarSection(form.Wins, BarSection::Cooling::ByView, content);
    auto* notices = new BarSection(form.WinNotice, BarSection::Cooling::ByView, content);
    rows->addWidget(BarSection::Heading(form.Label3, on_, content));
    rows->addWidget(wins);
    rows->addWidget(BarSection::Heading(form.Label1, on_, content));
    rows->addWidget(notices);
    rows->addStretch(1);
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    on_ += form.TakesKeyboard.Changed.connect([wins, notices](bool takes) {
        if (takes && !wins->TakeFocus()) notices->TakeFocus();
    });
    on_ += form.Unloaded.connect([wins, notices] {
        wins->Release();
        notices->Release();
    });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] { close(); });
}

}  // namespace talvora
