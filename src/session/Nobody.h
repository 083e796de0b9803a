#pragma once
// What stands in the place of a window or service that the program does not have: it takes everything and
// does nothing.

#include "session/HandoverTargets.h"

namespace talvora {

class Nobody : public ChannelWindows,
               public PrivateWindows,
               public UserInformation,
               public KeyPrompt,
               public MessageOfTheDay,
               public NoteBox,
               public MailService,
               public AnnouncementService,
               public AddressResolver,
               public FileOffers {
    using Text = const std::string&;
    void StartChan(Text) override {}
    void RemoveChan(Text) override {}
    void ForgetUsers() override {}
    void NamesChan(Text, const NameList&) override {}
    void JoinChan(Text, Text) override {}
    void PartChan(Text, Text) override {}
    void QuitChan(Text) override {}
    void RenameChan(Text, Text) override {}
    void ChanDistribute(Text, Text, Text, Text) override {}

    void StartPM(Text) override {}
    void PMDistribute(Text, Text, Text) override {}
    void EnterPM(Text) override {}
    void QuitPM(Text) override {}
    void RenamePM(Text, Text) override {}

    void Reply(const NameList&, Text) override {}
    void Notice(Text, Text) override {}
    void ExecList(Text) override {}
    void JoinNew() override {}
    void Display(Text) override {}
    void Display(Text, Text, int) override {}
    void CheckRCVMail() override {}
    void HandleMailCmd(Text) override {}
    void CheckAnn() override {}
    void HandleAnnData(Text) override {}
    bool IsResolving() const override { return false; }
    void ResolveIP(Text) override {}
    void SendData(Text, Text, bool, bool) override {}
    void Offer(Text, const std::vector<std::string>&) override {}
};

}  // namespace talvora
