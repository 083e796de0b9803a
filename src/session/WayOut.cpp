#include "session/WayOut.h"

#include "platform/Text.h"

namespace talvora {

void WayOut::SendPM(const std::string& to, const std::string& text, bool special) {
    IRCServ1.SendText(OneLine(to), OneLine(text), special);
}

void WayOut::SendNotice(const std::string& to, const std::string& text, bool special) {
    IRCServ1.SendNotice(OneLine(to), OneLine(text), special);
}

}  // namespace talvora
