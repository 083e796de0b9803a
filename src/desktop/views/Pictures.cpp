#include "desktop/views/Pictures.h"

#include "chat/UserTree.h"
#include "desktop/Theme.h"
#include "mail/MailPanel.h"
#include "session/SessionPanel.h"
#include "session/WindowsPanel.h"
#include "transfer/frmTransfers.h"

namespace talvora {

namespace {

const char* sessionName(int number) {
    switch (number) {
        case SessionPicture::OnLine:
            return "session-online";
        case SessionPicture::Connecting:
            return "session-connecting";
        default:
            return "session-offline";
    }
}

const char* windowName(int number) {
    switch (number) {
        case WindowPicture::PrivateNews:
            return "private-news";
        case WindowPicture::Channel:
            return "channel";
        case WindowPicture::ChannelNews:
            return "channel-news";
        default:
            return "private";
    }
}

const char* channelName(int number) {
    constexpr int withKey = 7;
    return number == withKey ? "channel-key" : "channel";
}

const char* mailName(int number) {
    switch (number) {
        case MailPicture::Unread:
            return "mail-unread";
        case MailPicture::UnreadUrgent:
            return "mail-urgent";
        case MailPicture::Outgoing:
            return "mail-out";
        default:
            return "mail-read";
    }
}

}  // namespace

QIcon pictureOf(Pictures list, int number) {
    switch (list) {
        case Pictures::States:
            return theme::icon(QStringLiteral("state-%1").arg(number));
        case Pictures::Users:
            return number == UserTree::GroupImage ? theme::icon(QStringLiteral("place"))
                                                  : pictureOf(Pictures::States, number);
        case Pictures::Sessions:
            return theme::icon(QString::fromLatin1(sessionName(number)));
        case Pictures::Windows:
            return theme::icon(QString::fromLatin1(windowName(number)));
        case Pictures::Channels:
            return theme::icon(QString::fromLatin1(channelName(number)));
        case Pictures::Announcements:
            return theme::icon(QStringLiteral("announcement-%1").arg(number));
        case Pictures::Mails:
            return theme::icon(QString::fromLatin1(mailName(number)));
        case Pictures::Transfers:
            return theme::icon(number == TransferPicture::Sent ? QStringLiteral("file-out")
                                                               : QStringLiteral("file-in"));
    }
    return {};
}

PictureOf picturesOf(Pictures list) {
    return [list](int number) { return pictureOf(list, number); };
}

}  // namespace talvora
