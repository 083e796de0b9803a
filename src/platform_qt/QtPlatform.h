#pragma once
// The platform of a real machine in one piece: owns loop, sockets, clock and, for a program without a screen,
// questions and desktop. Needs a QCoreApplication, which outlives it; what is handed in outlives it too.

#include <memory>

#include "platform/Platform.h"
#include "platform_qt/HeadlessDesktop.h"
#include "platform_qt/HeadlessQuestions.h"
#include "platform_qt/QtLoop.h"
#include "platform_qt/QtSockets.h"
#include "platform_qt/SystemClock.h"

namespace talvora {

class QtPlatform {
  public:
    // Without a screen; `onFault` is Abort or Ignore.
    QtPlatform(Files& files, SettingsStore& settings, Answer onFault = Answer::Abort);
    // With the questions and the desktop of a screen.
    QtPlatform(Files& files, SettingsStore& settings, Questions& questions, Desktop& desktop);
    QtPlatform(const QtPlatform&) = delete;
    QtPlatform& operator=(const QtPlatform&) = delete;

    Platform& platform() { return platform_; }

    // To be called first in `main`: a broken pipe and a file that may not grow raise no signal but a fault,
    // and a standard stream that is closed leads to the null device, so that no file or socket is ever opened
    // in its place and written to as if it were one.
    static void prepareProcess();

  private:
    QtLoop loop_;
    QtNetwork network_{loop_};
    SystemClock clock_;
    std::unique_ptr<HeadlessQuestions> questions_;
    HeadlessDesktop desktop_;
    Platform platform_;
};

}  // namespace talvora
