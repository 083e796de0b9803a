#pragma once
// A whole client with its windows, on virtual time.

#include <QApplication>
#include <memory>
#include <string>

#include "common/HostMessageNumbers.h"
#include "desktop/FormView.h"
#include "desktop/GuardedApplication.h"
#include "desktop/views/Views.h"
#include "simulation/World.h"
#include "simulation/windows/RememberingFace.h"

namespace talvora::test {

class DesktopWorld {
  public:
    DesktopWorld() : client(world.client("Maria")) {
        static_cast<GuardedApplication*>(qApp)->setGuard(&client.around.platform.Guarded);
        views = std::make_unique<Views>(*client.component, client.around.platform, face);
    }
    ~DesktopWorld() {
        static_cast<GuardedApplication*>(qApp)->setGuard(nullptr);
        views.reset();
    }
    DesktopWorld(const DesktopWorld&) = delete;
    DesktopWorld& operator=(const DesktopWorld&) = delete;

    // Starts the client, logs it on and shows its main window.
    void logOn() {
        client.host.send(HostMsg::Start);
        world.time.settle();
        client.server.says(":srv 001 Maria :Welcome");
        world.time.run(std::chrono::seconds(4));
        client.server.heard();
        client.host.send(HostMsg::ShowWindow, 1);
        settle();
    }
    // Both sides have done what they had to do.
    void settle() {
        world.time.run(std::chrono::milliseconds(600));
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    void says(const std::string& line) {
        client.server.says(line);
        settle();
    }

    ChatDesk& chats() { return client.component->Chats(); }
    FormView* viewOf(const Form* form) {
        const auto found = face.windows.find(form);
        return found == face.windows.end() ? nullptr : static_cast<FormView*>(found->second);
    }

    World world;
    Client& client;
    RememberingFace face;
    std::unique_ptr<Views> views;
};

}  // namespace talvora::test
