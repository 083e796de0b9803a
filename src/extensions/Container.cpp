#include "extensions/Container.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {
namespace {

constexpr int NameInUse = 727;

}  // namespace

Container::Container() {
    on_ += Image2.Click.connect([this] { fold(); });
    on_ += Label1.Click.connect([this] { fold(); });
}

Container::~Container() {
    if (client_ != nullptr) client_->ObjectEvent = nullptr;
}

void Container::Init(const std::string& ProgID, const std::string& caption, bool expanded) {
    const std::weak_ptr<const bool> life = life_;
    trapped(site_->Reporter, "Init", [&](Trap& step) {
        Label1.Caption = caption;
        // A report may have stood meanwhile, and the window been closed behind it.
        step([&] {
            if (!life.expired()) create(ProgID);
        });
        if (life.expired() || client_ == nullptr) return;
        show(expanded);
        step([&] {
            std::string hello = "###|";
            if (!life.expired()) Broadcast(hello);
        });
    });
}

void Container::create(const std::string& ProgID) {
    if (client_ != nullptr)
        throw RuntimeError(NameInUse, "There is already a control with the name 'Plugin'");
    std::shared_ptr<ChatPlugin> created = site_->Factories.Create(ProgID);
    if (created->Height < 0) throw RuntimeError(Fault::Overflow);
    static_cast<void>(CInt(created->Height));
    created->ObjectEvent = [this](const ChatPluginEvent& Info) { Client_ObjectEvent(Info); };
    client_ = std::move(created);
}

void Container::show(bool expanded) {
    client_->Left = 0;
    client_->Top = 0;
    Picture1.Height = client_->Height;
    client_->Visible = true;
    Label1.Loaded = true;
    Label2.Visible = false;
    Expanded = expanded;
    RefView();
}

void Container::Broadcast(std::string& Data) {
    const std::shared_ptr<ChatPlugin> client = client_;
    if (client == nullptr) throw RuntimeError(Fault::ObjectNotSet);
    try {
        client->Broadcast(Data);
    } catch (...) {
        throw CurrentFault();
    }
}

void Container::Client_ObjectEvent(const ChatPluginEvent& Info) {
    const std::weak_ptr<const bool> life = life_;
    std::shared_ptr<ChatPlugin> client = client_;
    Loop& loop = site_->TheLoop;
    trapped(site_->Reporter, "Client_ObjectEvent", [&](Trap&) {
        if (UCase(Info.Name) != "DATABROADCAST") return;
        const std::string value = elementOf(Info.Parameters, 0);
        const std::vector<std::string> fields = Split(value, "|");
        if (elementOf(fields, 0) == "###") {
            obey(elementOf(fields, 1));
            return;
        }
        DataBroadcast.raise(value);
        if (!life.expired()) RefView();
    });
    // The plug-in that raised the event still runs.
    if (life.expired()) loop.Defer([kept = std::move(client)] {});
}

void Container::obey(const std::string& command) {
    if (command == "ENABLE") {
        Enable();
    } else if (command == "DISABLE") {
        Disable();
    } else if (command == "EXPAND" || command == "INSET") {
        Expanded = command == "EXPAND";
        RefView();
    }
}

void Container::fold() {
    if (!Label1.Enabled) return;
    Expanded = !Expanded;
    RefView();
}

void Container::RefView() {
    Image2.Picture = Expanded ? imgUp : imgDown;
    Height = Expanded ? Picture1.Height + SlotCaption::Height : SlotCaption::Height;
}

void Container::Enable() {
    Label1.Enabled = true;
    Image2.Visible = true;
}

void Container::Disable() {
    Expanded = false;
    RefView();
    Label1.Enabled = false;
    Image2.Visible = false;
}

}  // namespace talvora
