#include "desktop/views/PluginTableView.h"

#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include "desktop/QtText.h"
#include "desktop/Theme.h"

namespace talvora {

namespace {

enum Column { Name, Privates, Channels, Columns };

QTableWidgetItem* nameOf(const PluginRow& row) {
    auto* item = new QTableWidgetItem(toQString(row.Caption.empty() ? row.ProgID : row.Caption));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(theme::plainToolTip(toQString(row.ProgID)));
    return item;
}

QTableWidgetItem* tick(bool ticked, const QString& name) {
    auto* item = new QTableWidgetItem;
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
    item->setData(Qt::AccessibleTextRole, name);
    return item;
}

}  // namespace

PluginTableView::PluginTableView(PluginRows& rows, QWidget* parent)
    : QWidget(parent), rows_(rows), table_(new QTableWidget(0, Columns, this)) {
    auto* lines = new QVBoxLayout(this);
    lines->setSpacing(theme::Medium);
    table_->setHorizontalHeaderLabels({tr("Plug-in"), tr("Private windows"), tr("Channel windows")});
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table_->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->verticalHeader()->hide();
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setTabKeyNavigation(false);
    table_->setAccessibleName(tr("Plug-ins"));
    lines->addWidget(table_, 1);
    auto* note = new QLabel(tr("Windows have what is ticked here from the next start on."), this);
    note->setFont(theme::smallFont());
    note->setWordWrap(true);
    lines->addWidget(note);
    fill();
    on_ += rows_.Changed.connect([this] { fill(); });
    connect(table_, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* item) {
        const auto row = static_cast<std::size_t>(item->row());
        const bool ticked = item->checkState() == Qt::Checked;
        if (item->column() == Privates) rows_.SetInPrivates(row, ticked);
        if (item->column() == Channels) rows_.SetInChannels(row, ticked);
    });
}

void PluginTableView::fill() {
    const QSignalBlocker quiet(table_);
    table_->setRowCount(static_cast<int>(rows_.Count()));
    for (int index = 0; index < table_->rowCount(); ++index) {
        const PluginRow& row = rows_.Row(static_cast<std::size_t>(index));
        if (table_->item(index, Name) == nullptr) {
            table_->setItem(index, Name, nameOf(row));
            table_->setItem(index, Privates, tick(row.InPrivates, tr("In private windows")));
            table_->setItem(index, Channels, tick(row.InChannels, tr("In channel windows")));
        }
        table_->item(index, Privates)->setCheckState(row.InPrivates ? Qt::Checked : Qt::Unchecked);
        table_->item(index, Channels)->setCheckState(row.InChannels ? Qt::Checked : Qt::Unchecked);
    }
}

}  // namespace talvora
