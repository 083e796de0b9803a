// Files that are offered, on their way and done.

#include <QEventLoop>
#include <QTimer>
#include <QTreeView>

#include "simulation/windows/Pictures.h"

namespace talvora::test {

// What Maria sends Bob, and he her, each while it is under way.
void takeTransfers(DesktopWorld& desktop, Photographer& photographer) {
    TransferDesk& desk = desktop.client.component->Transfers();
    FileOffers& offers = desk.Offers();
    Client& bob = desktop.world.loggedIn("Nikos");
    TransferDesk& peer = bob.component->Transfers();
    bob.around.disk.put("Received/old.txt", "");
    desktop.client.around.disk.put("Received/old.txt", "");
    const std::string holiday = "/home/maria/Διακοπές στη Χαλκιδική.jpg";
    const std::string song = "/home/nikos/Song for Saturday.ogg";
    for (const char* path : {"/home/maria/Programme.pdf", "/home/maria/Seating plan.odt"})
        desktop.client.around.disk.picked[path] = std::string(30'000, 'x');
    desktop.client.around.disk.picked[holiday] = std::string(2'500'000, 'x');
    bob.around.disk.picked[song] = std::string(3'900'000, 'x');

    const auto moment = [&](const Form* form, const char* name) {
        desktop.settle();
        QEventLoop drawn;  // what moves is drawn in real time
        QTimer::singleShot(50, &drawn, &QEventLoop::quit);
        drawn.exec();
        photographer.take(desktop.viewOf(form), name);
    };
    const auto underWay = [&](frmReceiveFile& receiver, const Form* form, const char* name) {
        desktop.world.network.delay = 1000;
        receiver.Command2.Click.raise();
        desktop.settle();
        desktop.settle();
        moment(form, name);
        desktop.world.network.delay = 0;
        desktop.world.time.run(std::chrono::seconds(20));
        desktop.settle();
    };
    offers.Offer("Nikos", {holiday, "/home/maria/Programme.pdf", "/home/maria/Seating plan.odt"});
    moment(desk.Dialog.Get(), "send-file-resolving");
    desk.Dialog.Get()->ResolveIP("address-of-Nikos");
    desk.Dialog.Get()->List1.ListIndex = 0;
    moment(desk.Dialog.Get(), "send-file");
    desk.Dialog.Get()->Command4.Click.raise();
    desktop.settle();
    underWay(*peer.Receiver.Get(), desk.Status.Get(), "sending");

    peer.Offers().SendData("address-of-Maria", "", false, false);
    peer.Dialog.Get()->AddFiles({song});
    peer.Dialog.Get()->Command4.Click.raise();
    moment(desk.Receiver.Get(), "receive-question");
    underWay(*desk.Receiver.Get(), desk.Receiver.Get(), "receiving");
    desktop.client.window().mnuTransfers.Click.raise();
    if (FormView* history = desktop.viewOf(desk.Transfers.Get())) {
        auto* list = history->findChild<QTreeView*>();
        list->setFocus();
        list->setCurrentIndex(list->model()->index(0, 0));
        ListView& files = desk.Transfers.Get()->ListView1;
        files.userClicks(files.ListItems(1));
    }
    moment(desk.Transfers.Get(), "transfers");
}

}  // namespace talvora::test
