#pragma once
// The table of the chat windows' plug-ins, each with a tick for private and one for channel windows.

#include <QWidget>

#include "settings/PluginRows.h"

class QTableWidget;

namespace talvora {

class PluginTableView final : public QWidget {
  public:
    // `rows` outlives the view.
    PluginTableView(PluginRows& rows, QWidget* parent = nullptr);

  private:
    void fill();

    PluginRows& rows_;
    QTableWidget* table_;
    Subscriptions on_;
};

}  // namespace talvora
