#pragma once
// The application object of a program with windows. Every event is dispatched inside the platform's guard: no
// exception reaches the toolkit, and what must not die under a running handler waits until the outermost
// event has been handled.

#include <QApplication>

#include "platform/Guard.h"

namespace talvora {

class GuardedApplication final : public QApplication {
  public:
    GuardedApplication(int& argc, char** argv) : QApplication(argc, argv) {}

    // Until then events are dispatched unguarded. The guard outlives the application's last event, or is
    // taken away with null.
    void setGuard(Guard* guard) { guard_ = guard; }
    // Whether a key or a button of the mouse is what is being handled.
    bool UserActs() const { return userActs_; }

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    Guard* guard_ = nullptr;
    bool userActs_ = false;
};

}  // namespace talvora
