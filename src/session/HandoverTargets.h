#pragma once
// The windows and services around the session as it sees them. Each is implemented by the feature that owns
// it.

#include <string>

#include "chat/ChatWindows.h"
#include "chat/FileOffers.h"
#include "notify/SmallWindows.h"

namespace talvora {

class UserInformation {
  public:
    virtual ~UserInformation() = default;
    virtual void Reply(const NameList& whoisResults, const std::string& nick) = 0;
    virtual void Notice(const std::string& command, const std::string& text) = 0;
};

class MailService {
  public:
    virtual ~MailService() = default;
    virtual void CheckRCVMail() = 0;
    virtual void HandleMailCmd(const std::string& text) = 0;
};

class AnnouncementService {
  public:
    virtual ~AnnouncementService() = default;
    virtual void CheckAnn() = 0;
    virtual void HandleAnnData(const std::string& text) = 0;
};

// Who waits for the address of somebody to whom a file is to go.
class AddressResolver {
  public:
    virtual ~AddressResolver() = default;
    virtual bool IsResolving() const = 0;
    virtual void ResolveIP(const std::string& address) = 0;
};

}  // namespace talvora
