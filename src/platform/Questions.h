#pragma once
// The questions that the component puts to its user. They block and return the answer; other events run
// meanwhile, so the caller looks again at the world before it goes on.

#include <optional>
#include <string>

#include "platform/Property.h"

namespace talvora {

enum class Buttons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };
enum class MessageIcon { None, Critical, Question, Exclamation, Information };
// The numbers are those that the system stores and compares.
enum class Answer { Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

struct MessageBox {
    std::string Text;  // lines end in CR LF
    std::string Title;
    Buttons Choices = Buttons::Ok;
    MessageIcon Icon = MessageIcon::None;
    // Further occasions of the same kind that came while this box stood and were answered for the user; a
    // view shows the number below the text.
    Property<int> Suppressed{0};
};

struct InputBox {
    std::string Prompt;
    std::string Title;
    std::string Default;
};

class Questions {
  public:
    virtual ~Questions() = default;
    virtual Answer Ask(MessageBox& box) = 0;
    // The text as typed; nothing if the user cancelled.
    virtual std::optional<std::string> Ask(const InputBox& box) = 0;
};

}  // namespace talvora
