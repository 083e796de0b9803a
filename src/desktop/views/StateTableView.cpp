#include "desktop/views/StateTableView.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QToolButton>

#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "desktop/views/Pictures.h"

namespace talvora {

namespace {

enum StateColumn { StateTag, StateDescription, StateColumns };

}  // namespace

StateTableView::StateTableView(StateRows& rows, QWidget* parent)
    : QWidget(parent), rows_(rows), table_(makeTable()), pictures_(makePictures()) {
    auto* grid = new QGridLayout(this);
    grid->setSpacing(theme::Medium);
    grid->addWidget(table_, 0, 0, 1, 2);
    grid->addLayout(makeButtons(), 0, 2);
    auto* caption = new QLabel(tr("Picture:"), this);
    caption->setBuddy(pictures_);
    grid->addWidget(caption, 1, 0);
    grid->addWidget(pictures_, 1, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    fill();
    if (rows_.Count() > 0) table_->setCurrentCell(0, StateTag);
    showCurrent();
    on_ += rows_.Changed.connect([this] { fill(); });
    connect(table_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) { take(item->row()); });
    connect(table_, &QTableWidget::currentCellChanged, this, [this] { showCurrent(); });
    connect(pictures_, &QComboBox::activated, this, [this] { take(current()); });
}

QTableWidget* StateTableView::makeTable() {
    auto* table = new QTableWidget(0, StateColumns, this);
    table->setHorizontalHeaderLabels({tr("Tag"), tr("Description")});
    table->horizontalHeader()->setSectionResizeMode(StateDescription, QHeaderView::Stretch);
    table->horizontalHeader()->setHighlightSections(false);
    table->verticalHeader()->hide();
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setAccessibleName(tr("States"));
    return table;
}

QComboBox* StateTableView::makePictures() {
    auto* box = new QComboBox(this);
    for (int number = 1; number <= StateRows::Icons; ++number) {
        box->addItem(pictureOf(Pictures::States, number), tr("Picture %1").arg(number));
    }
    box->setAccessibleName(tr("Picture of the state"));
    return box;
}

QBoxLayout* StateTableView::makeButtons() {
    auto* column = new QVBoxLayout;
    column->setSpacing(theme::Small);
    const auto button = [&](const char* icon, const QString& text, auto clicked) {
        QToolButton* made = theme::iconButton(QString::fromLatin1(icon), text, this);
        column->addWidget(made);
        connect(made, &QToolButton::clicked, this, clicked);
        return made;
    };
    button("add", tr("Add a state"), [this] { add(); });
    remove_ = button("remove", tr("Remove the state"), [this] { remove(); });
    up_ = button("up", tr("Move the state up"), [this] { moveBy(-1); });
    down_ = button("down", tr("Move the state down"), [this] { moveBy(1); });
    column->addStretch();
    return column;
}

int StateTableView::current() const {
    return table_->currentRow();
}

void StateTableView::fill() {
    const QSignalBlocker quiet(table_);
    table_->setRowCount(static_cast<int>(rows_.Count()));
    for (int index = 0; index < table_->rowCount(); ++index) fillRow(index);
    showCurrent();
}

void StateTableView::fillRow(int index) {
    const StateRow& row = rows_.Row(static_cast<std::size_t>(index));
    const auto put = [&](StateColumn column, const std::string& text) {
        if (table_->item(index, column) == nullptr) {
            table_->setItem(index, column, new QTableWidgetItem);
        }
        table_->item(index, column)->setText(toQString(text));
    };
    put(StateTag, row.Tag);
    put(StateDescription, row.Description);
    table_->item(index, StateTag)->setIcon(pictureOf(Pictures::States, row.Icon));
}

void StateTableView::showCurrent() {
    const int row = current();
    const bool any = row >= 0 && row < static_cast<int>(rows_.Count());
    pictures_->setEnabled(any);
    if (any) pictures_->setCurrentIndex(rows_.Row(static_cast<std::size_t>(row)).Icon - 1);
    if (remove_ == nullptr) return;
    remove_->setEnabled(any);
    up_->setEnabled(any && row > 0);
    down_->setEnabled(any && row + 1 < static_cast<int>(rows_.Count()));
}

// What the row shows goes to the model. What the model makes of it comes back, also if it is what was there.
void StateTableView::take(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.Count())) return;
    const auto index = static_cast<std::size_t>(row);
    const auto text = [&](StateColumn column) { return fromQString(table_->item(row, column)->text()); };
    const int icon = row == current() ? pictures_->currentIndex() + 1 : rows_.Row(index).Icon;
    rows_.Change(index, {text(StateTag), text(StateDescription), icon});
    const QSignalBlocker quiet(table_);
    fillRow(row);
}

void StateTableView::add() {
    if (!rows_.Add()) return;  // the question may have outlived the view
    const int row = table_->rowCount() - 1;
    table_->setCurrentCell(row, StateTag);
    table_->setFocus();
    table_->editItem(table_->item(row, StateTag));
}

void StateTableView::remove() {
    const int row = current();
    if (row < 0) return;
    rows_.Remove(static_cast<std::size_t>(row));
    const int left = table_->rowCount();
    if (left > 0) table_->setCurrentCell(std::min(row, left - 1), StateTag);
    showCurrent();
}

void StateTableView::moveBy(int step) {
    const int row = current();
    const int other = row + step;
    if (row < 0 || other < 0 || other >= table_->rowCount()) return;
    rows_.Swap(static_cast<std::size_t>(row), static_cast<std::size_t>(other));
    table_->setCurrentCell(other, table_->currentColumn());
}

}  // namespace talvora
