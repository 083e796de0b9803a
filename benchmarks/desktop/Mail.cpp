// Figures of mail with its windows, on a display and the machine's own disk: the list of ten thousand mails
// drawn anew for one that is new, and a mail opened until it is seen. Prints name, tab, value, tab, unit.

#include <QAbstractScrollArea>
#include <QApplication>
#include <memory>

#include "MailFolder.h"
#include "desktop/Measure.h"
#include "desktop/views/MailArea.h"
#include "desktop/views/PluginViews.h"
#include "desktop/views/ViewMailView.h"
#include "simulation/windows/RememberingFace.h"

namespace {

using namespace talvora;
using namespace talvora::measure;

constexpr int manyMails = 10'000;
constexpr int longMail = 300;  // lines

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
