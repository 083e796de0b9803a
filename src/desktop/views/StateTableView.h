#pragma once
// The table of states with its buttons: tags and descriptions are edited in their cells, the picture of the
// row in the box below.

#include <QWidget>

#include "settings/StateRows.h"

class QBoxLayout;
class QComboBox;
class QTableWidget;
class QToolButton;

namespace talvora {

class StateTableView final : public QWidget {
  public:
    // `rows` outlives the view.
    StateTableView(StateRows& rows, QWidget* parent = nullptr);

  private:
    QTableWidget* makeTable();
    QComboBox* makePictures();
    QBoxLayout* makeButtons();
    void fill();
    void fillRow(int index);
    void showCurrent();
    void take(int row);
    void add();
    void remove();
    void moveBy(int step);
    int current() const;

    StateRows& rows_;
    QTableWidget* table_;
    QComboBox* pictures_;
    QToolButton* remove_ = nullptr;
    QToolButton* up_ = nullptr;
    QToolButton* down_ = nullptr;
    Subscriptions on_;
};

}  // namespace talvora
