#pragma once
// All users on line as a tree by place, and above it a box that finds a nick as one types it. The arrow down
// leads from the box to the tree, Enter opens a private window with the one found, Escape shows all again.

#include <QWidget>

#include "chat/UserTree.h"
#include "desktop/FileDrop.h"

class QLineEdit;

namespace talvora {

class NodeTree;

class UserTreeArea final : public QWidget {
  public:
    UserTreeArea(UserTree& users, QWidget* parent);

    // To type a nick at once, over what was typed before.
    void startFinding();
    // Files that are dropped on a user.
    void takeFiles(TakeFiles take);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool keyInBox(int key);

    QLineEdit* box_;
    NodeTree* tree_;
};

}  // namespace talvora
