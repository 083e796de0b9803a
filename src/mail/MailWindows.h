#pragma once
// The windows of mail, as mail's own parts ask for them. The composition implements it.

#include <string>

namespace talvora {

class MailWindows {
  public:
    virtual ~MailWindows() = default;
    // A new viewer on a file of the mail folder. There are so many at most; beyond that, nothing.
    virtual void View(const std::string& fileName) = 0;
    // Opens the mail as View does and answers it.
    virtual void Reply(const std::string& fileName) = 0;
    // A new composer, filled. `isRTF` tells what `body` is.
    virtual void Write(const std::string& to, const std::string& body, bool isRTF,
                       const std::string& subject) = 0;
    // A new composer on a draft.
    virtual void OpenDraft(const std::string& fileName) = 0;
};

}  // namespace talvora
