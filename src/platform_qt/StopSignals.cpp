#include "platform_qt/StopSignals.h"

#include <sys/signalfd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace talvora {
namespace {

sigset_t stopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
    return signals;
}

}  // namespace

StopSignals::StopSignals() {
    const sigset_t signals = stopSignals();
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    signals_.reset(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (signals_.get() < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
}

void StopSignals::listen(std::function<void()> stop) {
    stop_ = std::move(stop);
    notifier_ = std::make_unique<QSocketNotifier>(signals_.get(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { arrived(); });
}

void StopSignals::arrived() {
    signalfd_siginfo told{};
    if (::read(signals_.get(), &told, sizeof told) != static_cast<ssize_t>(sizeof told)) return;
    notifier_->setEnabled(false);
    const sigset_t signals = stopSignals();
    ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    stop_();
}

}  // namespace talvora
