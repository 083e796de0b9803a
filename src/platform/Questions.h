#pragma once
// The questions that the component puts to its user. They block and return the answer; other events run
// meanwhile, so the caller looks again at the world before it goes on.

#include <optional>
#include <string>
#include <vector>

#include "platform/Colour.h"
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

// Kinds of files to choose from; the first is what the box begins with. Empty means all files.
struct FileKind {
    std::string Name;      // "All files"
    std::string Patterns;  // "*.*", several parted by blanks; "*.*" stands for "*"
};

// Paths are native ones: absolute, in the bytes of the system, and no paths of the program's folder.
struct OpenFileBox {
    std::string Title;
    std::vector<FileKind> Kinds;
    bool Many = false;  // more than one may be chosen
};

struct SaveFileBox {
    std::string Title;
    std::vector<FileKind> Kinds;
    std::string Suggested;  // a path or a name alone
};

// A font as it is chosen, and as the box shows it at first.
struct FontChoice {
    std::string Name;  // code page 1253
    double Size = 0;   // in points
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool StrikeThru = false;
    Colour Color = 0;  // black is the automatic colour

    bool operator==(const FontChoice&) const = default;
};

struct FontBox {
    std::string Title;
    FontChoice Preset;
};

class Questions {
  public:
    virtual ~Questions() = default;
    virtual Answer Ask(MessageBox& box) = 0;
    // The text as typed; nothing if the user cancelled.
    virtual std::optional<std::string> Ask(const InputBox& box) = 0;
    // The files that were chosen, which were there a moment ago; none if the user cancelled.
    virtual std::vector<std::string> Ask(const OpenFileBox& box) = 0;
    // Nothing if the user cancelled. Whether an existing file may be replaced has been asked.
    virtual std::optional<std::string> Ask(const SaveFileBox& box) = 0;
    virtual std::optional<FontChoice> Ask(const FontBox& box) = 0;
};

}  // namespace talvora
