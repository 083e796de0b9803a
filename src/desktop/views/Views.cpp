#include "desktop/views/Views.h"

#include <QShortcut>
#include <type_traits>

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
#include "desktop/views/ScriptsView.h"
#include "desktop/views/SelectUserView.h"
#include "desktop/views/SendMailView.h"
#include "desktop/views/SettingsView.h"
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
    viewEach<Form1View>(component_.MainWindowLoaded, announcements.Panel);
    viewEach<ChannelView>(chats.Channels.Loaded);
    viewEach<PrivateView>(chats.Privates.Loaded);
    viewEach<EmoticonsView>(chats.Picker.Loaded);
    viewEach<ChanKeyView>(chats.ChanKey.Loaded);
    viewEach<MsgBoxView>(chats.MsgBox.Loaded);
    viewEach<MOTDView>(chats.MOTD.Loaded);
    viewEach<ScriptsView>(chats.Scripts.Loaded);
    viewEach<AnnouncementsView>(announcements.Viewer.Loaded);
    viewEach<AnnounceView>(announcements.Composer.Loaded);
    MailDesk& mails = component_.Mails();
    viewEach<ViewMailView>(mails.Viewers.Loaded);
    viewEach<SendMailView>(mails.Composers.Loaded);
    viewEach<ExpireView>(mails.Expire.Loaded);
    viewEach<SelectUserView>(mails.SelectUser.Loaded);
    if (platform.Screen.PlacesWindows()) {
        viewEach<CornerView>(component_.Notes().Popup.Loaded);
    } else {
        viewEach<PopupView>(component_.Notes().Popup.Loaded);
    }
    viewEach<WhoisView>(component_.Notes().Whois.Loaded);
    face.AddIcon("IRC", theme::icon(QStringLiteral("app")));
    face.AddSettingsPage("TalvoraClient.Settings", [this]() -> std::unique_ptr<SettingsPage> {
        return std::make_unique<SettingsView>(component_.MakeSettingsPage());
    });
    face.SetNoticeOpener([this](const HostValue& window) { component_.OpenNotice(window); });
}

// Also the windows of forms that nobody has unloaded.
Views::~Views() {
    site_.Face.SetNoticeOpener({});
    on_.clear();
    for (const QPointer<FormView>& view : open_) delete view;
}

void Views::addBarKey(FormView& view) {
    auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_B), &view);
    QObject::connect(key, &QShortcut::activated, &view, [this] { component_.Notes().ToggleBar(); });
}

// A view deletes itself with its form.
template <class View, class TheForm, class... More>
void Views::viewEach(Event<TheForm&>& loaded, More&... more) {
    on_ += loaded.connect([this, &more...](TheForm& form) {
        std::erase_if(open_, [](const QPointer<FormView>& view) { return view.isNull(); });
        auto* view = new View(form, more..., site_);
        open_.emplace_back(view);
        // Where one writes a message the key makes bold letters.
        if constexpr (!std::is_same_v<View, SendMailView>) addBarKey(*view);
    });
}

}  // namespace talvora
