#pragma once
// The controls of the plug-in that encrypts, in its slot of a private window. While encryption is on, the
// window's title says so.

#include <QWidget>

#include "extensions/plg_Encrypt.h"

class QBoxLayout;

namespace talvora {

class EncryptView final : public QWidget {
  public:
    // The plug-in outlives the view.
    EncryptView(plg_Encrypt& plugin, QWidget* parent);

  private:
    QBoxLayout* makeKey();
    QWidget* makeSwitch();
    QWidget* makeNote(Label& model);
    void markWindow(bool on);

    plg_Encrypt& plugin_;
    Subscriptions on_;
};

}  // namespace talvora
