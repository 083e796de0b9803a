#pragma once
// The panel of the most recent announcement, on the third tab of the mail area. The composition owns
// it, the mail area says when it shows, and frmAnnouncements fills it.

#include "platform/Controls.h"

namespace talvora {

struct picAnn {
    Label Label14{"Last Announcement"};
    Label Label15{"Announcement Viewer"};   // opens the list
    Label Label16{"(Unavaliable)"};         // the text
    Label Label17;                          // who and when
    Label PostNew{"Post an announcement"};  // opens the composer
};

}  // namespace talvora
