#pragma once
// Where the session hands over what is not its own. The composition puts each feature of the program in its
// place; the place of one that the program does not have is taken by nobody, so nothing asks whether it is
// there.

#include "session/Nobody.h"

namespace talvora {

// One such place. Whoever is put into it outlives the session, or is taken out again.
template <class Target>
class Handover {
  public:
    explicit Handover(Target& nobody) : target_(&nobody) {}
    Handover& operator=(Target& target) {
        target_ = &target;
        return *this;
    }
    Target* operator->() const { return target_; }

  private:
    Target* target_;
};

class Handovers {
    Nobody nobody_;

  public:
    Handovers() = default;
    Handovers(const Handovers&) = delete;
    Handovers& operator=(const Handovers&) = delete;

    Handover<ChannelWindows> Channels{nobody_};
    Handover<PrivateWindows> Privates{nobody_};
    Handover<KeyPrompt> Keys{nobody_};
    Handover<MessageOfTheDay> MOTD{nobody_};
    Handover<NoteBox> Notes{nobody_};
    Handover<UserInformation> Whois{nobody_};
    Handover<MailService> Mail{nobody_};
    Handover<AddressResolver> Resolver{nobody_};
    Handover<FileOffers> Files{nobody_};
    Handover<AnnouncementService> Announcements{nobody_};
};

}  // namespace talvora
