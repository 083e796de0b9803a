#include "desktop/views/Views.h"

#include <QShortcut>
#include <type_traits>
#include <utility>

#include "desktop/Theme.h"
#include "desktop/views/AnnounceView.h"
#include "desktop/views/AnnouncementsView.h"
#include "desktop/views/ChanKeyView.h"
#include "desktop/views/ChannelView.h"
#include "desktop/views/CornerView.h"
#include "desktop/views/EmoticonsView.h"
#include "desktop/views/EncryptView.h"
#include "desktop/views/ExpireView.h"
#include "desktop/views/Form1View.h"
#include "desktop/views/MOTDView.h"
#include "desktop/views/MsgBoxView.h"
#include "desktop/views/PopupView.h"
#include "desktop/views/PrivateView.h"
#include "desktop/views/ReceiveFileView.h"
#include "desktop/views/ScriptsView.h"
#include "desktop/views/SelectUserView.h"
#include "desktop/views/SendFileView.h"
#include "desktop/views/SendMailView.h"
#include "desktop/views/SettingsView.h"
#include "desktop/views/TransferStatusView.h"
#include "desktop/views/TransfersView.h"
#include "desktop/views/ViewMailView.h"
#include "desktop/views/WhoisView.h"

namespace talvora {

Views::Views(Connect& component, Platform& platform, HostFace& face)
    : component_(component), memory_(platform.Settings), site_{face, platform, memory_, plugins_} {
    ChatDesk& chats = component_.Chats();
    AnnounceDesk& announcements = component_.Announcements();
    plugins_.Register([](ChatPlugin& plugin, QWidget* parent) -> QWidget* {
        auto* encrypt = dynamic_cast<plg_Encrypt*>(&plugin);
        return encrypt != nullptr ? new EncryptView(*encrypt, parent) : nullptr;
    });
    viewWhenShown<Form1View>(main_, component_.MainWindowLoaded, announcements.Panel);
    viewEach<ChannelView>(chats.Channels.Loaded);
    viewEach<PrivateView>(chats.Privates.Loaded);
    viewEach<EmoticonsView>(chats.Picker.Loaded);
    viewEach<ChanKeyView>(chats.ChanKey.Loaded);
    viewEach<MsgBoxView>(chats.MsgBox.Loaded);
    viewEach<MOTDView>(chats.MOTD.Loaded);
    viewEach<ScriptsView>(chats.Scripts.Loaded);
    viewWhenShown<AnnouncementsView>(announcements_, announcements.Viewer.Loaded);
    viewEach<AnnounceView>(announcements.Composer.Loaded);
    MailDesk& mails = component_.Mails();
    viewEach<ViewMailView>(mails.Viewers.Loaded);
    viewEach<SendMailView>(mails.Composers.Loaded);
    viewEach<ExpireView>(mails.Expire.Loaded);
    viewEach<SelectUserView>(mails.SelectUser.Loaded);
    if (platform.Screen.PlacesWindows()) {
        viewWhenShown<CornerView>(bar_, component_.Notes().Popup.Loaded);
    } else {
        viewWhenShown<PopupView>(bar_, component_.Notes().Popup.Loaded);
    }
    viewEach<WhoisView>(component_.Notes().Whois.Loaded);
    TransferDesk& transfers = component_.Transfers();
    viewWhenShown<ReceiveFileView>(receiver_, transfers.Receiver.Loaded);
    // It listens as long as the component is there.
    if (frmReceiveFile* form = transfers.Receiver.Get()) waitFor<ReceiveFileView>(receiver_, *form);
    viewEach<SendFileView>(transfers.Dialog.Loaded);
    viewEach<TransferStatusView>(transfers.Status.Loaded);
    viewEach<TransfersView>(transfers.Transfers.Loaded);
    face.AddIcon("IRC", theme::icon(QStringLiteral("app")));
    face.AddSettingsPage("TalvoraClient.Settings", [this]() -> std::unique_ptr<SettingsPage> {
        return std::make_unique<SettingsView>(component_.MakeSettingsPage());
    });
    face.SetNoticeOpener([this](const HostValue& window) { component_.OpenNotice(window); });
}

// Also the windows of forms that nobody has unloaded.
Views::~Views() {
    site_.Face.SetNoticeOpener({});
    main_.Shown.disconnect();
    announcements_.Shown.disconnect();
    receiver_.Shown.disconnect();
    bar_.Shown.disconnect();
    on_.clear();
    for (const QPointer<FormView>& view : open_) delete view;
}

void Views::addBarKey(FormView& view) {
    auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_B), &view);
    QObject::connect(key, &QShortcut::activated, &view, [this] { component_.Notes().ToggleBar(); });
}

// A view deletes itself with its form.
template <class View, class TheForm>
void Views::viewEach(Event<TheForm&>& loaded) {
    on_ += loaded.connect([this](TheForm& form) {
        seeMain();
        std::erase_if(open_, [](const QPointer<FormView>& view) { return view.isNull(); });
        auto* view = new View(form, site_);
        open_.emplace_back(view);
        // Where one writes a message the key makes bold letters.
        if constexpr (!std::is_same_v<View, SendMailView>) addBarKey(*view);
    });
}

template <class View, class TheForm, class... More>
void Views::viewWhenShown(Unseen& unseen, Event<TheForm&>& loaded, More&... more) {
    on_ += loaded.connect([this, &unseen, &more...](TheForm& form) { waitFor<View>(unseen, form, more...); });
}

template <class View, class TheForm, class... More>
void Views::waitFor(Unseen& unseen, TheForm& form, More&... more) {
    unseen.Make = [this, &form, &more...] { return new View(form, more..., site_); };
    unseen.Shown = form.Visible.Changed.connect([this, &unseen](bool) { see(unseen); });
}

// The main window is made ahead of all others.
void Views::seeMain() {
    if (component_.MainWindow() != nullptr) see(main_);
}

void Views::see(Unseen& unseen) {
    if (&unseen != &main_) seeMain();
    unseen.Shown.disconnect();
    const auto make = std::exchange(unseen.Make, {});
    if (!make) return;
    FormView* const view = make();
    open_.emplace_back(view);
    addBarKey(*view);
    // As it would have followed its form.
    view->CatchUp();
}

}  // namespace talvora
