#include "desktop/views/TransferPanel.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

constexpr int BetweenDrawings = 34;  // milliseconds
constexpr int BarSteps = 1000;
constexpr std::size_t LongestShown = 300;

double shareOf(const TransferProgress& at) {
    return at.Size > 0 ? static_cast<double>(at.Done) / static_cast<double>(at.Size) : 0.0;
}

// Of the whole list, whose later files nobody knows the sizes of: each counts the same.
double listShareOf(const TransferProgress& at) {
    return at.Files > 0 && at.File > 0 ? (at.File - 1 + shareOf(at)) / at.Files : 0.0;
}

void showWords(QLabel& label, const Label& model) {
    const QString words = oneLine(model.Caption.get(), LongestShown);
    if (label.text() == words) return;
    label.setText(words);
    label.setToolTip(theme::plainToolTip(words));
}

}  // namespace

TransferPanel::TransferPanel(const TransferShown& shown, HostFace& face, QWidget* parent)
    : QWidget(parent), shown_(shown), face_(face) {
    auto* rows = new QGridLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setHorizontalSpacing(theme::Large);
    rows->setVerticalSpacing(theme::Medium);
    rows->setColumnStretch(1, 1);
    fileName_ = addWords(*rows, tr("Filename:"));
    action_ = addWords(*rows, tr("Current action:"));
    file_ = addBar(*rows, tr("This file:"));
    list_ = addBar(*rows, tr("All files:"));
    listName_ = qobject_cast<QLabel*>(rows->itemAtPosition(rows->rowCount() - 1, 0)->widget());
    words_ = addWords(*rows, {});
    speed_ = addWords(*rows, {});
    rows->setRowStretch(rows->rowCount(), 1);
    later_.setSingleShot(true);
    connect(&later_, &QTimer::timeout, this, [this] { draw(); });
    followAll();
    draw();
}

TransferPanel::~TransferPanel() {
    face_.ShowProgress(shown_.TheForm, {});
}

// What strangers write decides neither the width nor the look.
QLabel* TransferPanel::addWords(QGridLayout& rows, const QString& name) {
    const int row = rows.rowCount();
    auto* label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(1);
    label->setAccessibleName(name);
    if (!name.isEmpty()) rows.addWidget(new QLabel(name, this), row, 0);
    rows.addWidget(label, row, 1);
    return label;
}

QProgressBar* TransferPanel::addBar(QGridLayout& rows, const QString& name) {
    const int row = rows.rowCount();
    auto* bar = new QProgressBar(this);
    bar->setRange(0, BarSteps);
    bar->setAccessibleName(name);
    rows.addWidget(new QLabel(name, this), row, 0);
    rows.addWidget(bar, row, 1);
    return bar;
}

// ---- Drawing

void TransferPanel::followAll() {
    const auto soon = [this](const auto&) { drawSoon(); };
    for (Label* label : {&shown_.FileName, &shown_.Action, &shown_.Speed, &shown_.Meter.lblProgress})
        on_ += label->Caption.Changed.connect(soon);
    on_ += shown_.Meter.Progress.Changed.connect(soon);
}

void TransferPanel::drawSoon() {
    if (later_.isActive()) return;
    const qint64 since = drawn_.isValid() ? drawn_.elapsed() : BetweenDrawings;
    later_.start(static_cast<int>(std::clamp<qint64>(BetweenDrawings - since, 0, BetweenDrawings)));
}

void TransferPanel::draw() {
    drawn_.start();
    showWords(*fileName_, shown_.FileName);
    showWords(*action_, shown_.Action);
    showWords(*words_, shown_.Meter.lblProgress);
    showWords(*speed_, shown_.Speed);
    drawBars();
}

void TransferPanel::drawBars() {
    const TransferProgress& at = shown_.Meter.Progress.get();
    file_->setValue(static_cast<int>(shareOf(at) * BarSteps));
    list_->setValue(static_cast<int>(listShareOf(at) * BarSteps));
    for (QWidget* widget : {static_cast<QWidget*>(list_), static_cast<QWidget*>(listName_)})
        widget->setVisible(at.Files > 1);
    const bool tells = isVisible() && at.File > 0;
    face_.ShowProgress(shown_.TheForm, tells ? std::optional(listShareOf(at)) : std::nullopt);
}

void TransferPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    draw();
}

void TransferPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    face_.ShowProgress(shown_.TheForm, {});
}

}  // namespace talvora
