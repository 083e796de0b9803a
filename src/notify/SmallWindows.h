#pragma once
// The small windows as their callers see them.

#include <string>

namespace talvora {

class KeyPrompt {
  public:
    virtual ~KeyPrompt() = default;
    // Asks for the key of each channel of `list`, each followed by "|".
    virtual void ExecList(const std::string& list) = 0;
    // Asks for the name of a channel to create.
    virtual void JoinNew() = 0;
};

class MessageOfTheDay {
  public:
    virtual ~MessageOfTheDay() = default;
    virtual void Display(const std::string& text) = 0;
};

// Notes that never block their caller.
class NoteBox {
  public:
    virtual ~NoteBox() = default;
    virtual void Display(const std::string& text, const std::string& title, int icon) = 0;
};

}  // namespace talvora
