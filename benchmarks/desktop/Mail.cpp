// Figures of mail with its windows, on a display and the machine's own disk: the list of ten thousand mails
// drawn anew for one that is new, and a mail opened until it is seen. Prints name, tab, value, tab, unit.

#include <QAbstractScrollArea>
#include <QApplication>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

#include "MailFolder.h"
#include "desktop/views/MailArea.h"
#include "desktop/views/PluginViews.h"
#include "desktop/views/ViewMailView.h"
#include "simulation/windows/RememberingFace.h"

namespace {

using namespace talvora;
using SteadyClock = std::chrono::steady_clock;

constexpr int manyMails = 10'000;
constexpr int longMail = 300;  // lines

// Whether a widget has been painted.
class Glance final : public QObject {
  public:
    explicit Glance(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        seen_ = seen_ || event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }
    // Runs the loop until it was.
    void wait() {
        while (!seen_) QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        seen_ = false;
    }

  private:
    bool seen_ = false;
};

double millisecondsOf(const auto& call) {
    const auto begin = SteadyClock::now();
    call();
    return std::chrono::duration<double, std::milli>(SteadyClock::now() - begin).count();
}

template <class Measure>
void print(const char* name, Measure measure) {
    std::array<double, 7> runs{};
    for (double& run : runs) run = measure();
    std::sort(runs.begin(), runs.end());
    std::printf("%s\t%.6g\tms\n", name, runs[runs.size() / 2]);
    std::fflush(stdout);
}

void calm() {
    for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void list() {
    MailFolder mails(manyMails);
    auto panel = mails.panel();
    MailArea area(*panel, nullptr);
    area.resize(480, 480);
    panel->Load();
    area.show();
    calm();
    auto* shown = area.findChild<QAbstractScrollArea*>();
    Glance glance(*shown->viewport());
    int number = manyMails;
    print("mail.list_again_10000_ms", [&] {
        mails.put(++number);
        const double took = millisecondsOf([&] {
            panel->RefreshMailList();
            shown->viewport()->update();
            glance.wait();
        });
        calm();
        return took;
    });
}

// The file is read, its window made, shown and painted; and the read mark is safe.
void open() {
    MailFolder mails;
    test::RememberingFace face;
    ViewMemory memory(mails.store);
    const PluginViews plugins;
    const ViewSite site{face, mails.platform, memory, plugins};
    int number = 0;
    print("mail.open_ms", [&] {
        mails.put(++number, longMail);
        std::unique_ptr<frmViewMail> form;
        ViewMailView* view = nullptr;
        const double took = millisecondsOf([&] {
            form = std::make_unique<frmViewMail>(mails.around, mails.windows);
            view = new ViewMailView(*form, site);
            Glance glance(*view->findChild<QAbstractScrollArea*>()->viewport());
            form->DisplayFile(MailFile::IncomingName(number));
            glance.wait();
        });
        delete view;
        calm();
        return took;
    });
}

}  // namespace

int main(int argc, char** argv) {
    const GuardedApplication application(argc, argv);
    list();
    open();
    return 0;
}
