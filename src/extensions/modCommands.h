#pragma once
// Scripts of the user: a word typed behind "\" in a private window, or a command of a window's menu, runs a
// few lines that send raw IRC text, change the nick or show a line in the window. The composition owns one a
// component. No script runs another one, so none is endless.
//
// An entry of a list is a name, character 1, and the script's lines with character 2 between them.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Trap.h"
#include "extensions/ScriptFile.h"
#include "platform/Platform.h"

namespace talvora {

// The window that a script runs in.
class ScriptWindow {
  public:
    virtual void ShowEcho(const std::string& text) = 0;

  protected:
    ~ScriptWindow() = default;
};

class modCommands {
  public:
    // What a script acts on.
    struct Session {
        std::function<void(const std::string& line)> SendIRC;
        std::function<void(const std::string& nick)> SetNickname;
    };

    modCommands(Platform& platform, GlobError& globError, Session session);

    // Reads the three files anew. Damaged entries are reported once a file, and the others work.
    void Load();

    // `Line` is what was typed, without the "\". An unknown command does nothing.
    void RunScriptCommand(const std::string& Line, const std::string& Nick, ScriptWindow& Window);
    // An entry of a menu, counted from 0, for `parameters`, words parted by a blank: `%1` and so on.
    void RunMenuCommand(const std::vector<std::string>& list, std::size_t index,
                        const std::string& parameters, const std::string& Nick, ScriptWindow& Window);
    void Exec(const std::string& Script, std::string Line, const std::string& Nick, ScriptWindow& Window);
    // `%0` to `%100` in `Text` become the words of `Line`, in rising order: `%10` is word 1 and a "0". Fault
    // 14 for a text that would grow beyond all use.
    std::string ReplaceParm(const std::string& Line, std::string Text);
    // Word `Index` of the text, counted from 0; empty if there is none.
    static std::string ParmWord(std::string_view Text, std::uint8_t Index);

    // The commands whose names begin so, in whatever case, and go on; in the order of the alphabet.
    std::vector<std::string> NamesLike(const std::string& begin) const;

    std::vector<std::string> CommandList;  // typed in a private window
    std::vector<std::string> ChannelMenu;  // the menu of channel windows
    std::vector<std::string> PrivateMenu;  // the menu of private windows
    Event<> MenusChanged;

    static constexpr std::size_t LongestText = std::size_t{64} << 10;

  private:
    void load(const char* path, std::vector<std::string>& list);
    void runLine(const std::string& scriptLine, const std::string& line, ScriptWindow& window);

    Platform& platform_;
    GlobError& globError_;
    Session session_;
};

// The name in front of an entry's script.
std::string ScriptNameOf(const std::string& entry);

}  // namespace talvora
