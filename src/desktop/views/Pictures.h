#pragma once
// The image lists by whose numbers the models name pictures.

#include <QIcon>

#include "desktop/Binding.h"

namespace talvora {

enum class Pictures {
    States,    // of users: lists and the user's own
    Users,     // of the tree of users: the same, and that of a group
    Sessions,  // of the connection
    Windows,   // of open chat windows
    Channels,
    Announcements,  // their categories
    Mails,          // of the list of messages, and of a message's window
    Transfers       // whether a file came or went
};

QIcon pictureOf(Pictures list, int number);
PictureOf picturesOf(Pictures list);

}  // namespace talvora
