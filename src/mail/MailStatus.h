#pragma once
// What the main window says of a mail on its way, and the two timers of the dialogue with the robot. The mail
// panel owns it; the manager of mail writes it.

#include "platform/Bars.h"
#include "platform/Controls.h"
#include "platform/Timer.h"

namespace talvora {

class MailStatus {
  public:
    explicit MailStatus(Platform& platform) : tmrSendFlood(platform, 2000), tmrSendTimeout(platform, 30000) {}

    Label Label7{"Idle"};    // what mail is doing now
    Image Image8{0, false};  // the bar of progress, shown while a line is on its way
    ProgressBar Picture2;    // how long the bar is, in percent

    Timer tmrSendFlood;    // the next piece goes even if no acknowledgement comes
    Timer tmrSendTimeout;  // the robot has fallen silent

    void MailRCVUpdate(float progress) {
        Label7.Caption = "Receiving message";
        Image8.Visible = true;
        Picture2.SetValue(static_cast<std::int64_t>(progress));
    }
    void MailRCVDone() {
        Label7.Caption = "Idle";
        Image8.Visible = false;
    }
    void Stop() {
        tmrSendFlood.Enabled = false;
        tmrSendTimeout.Enabled = false;
    }
};

}  // namespace talvora
