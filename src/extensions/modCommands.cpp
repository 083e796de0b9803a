#include "extensions/modCommands.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int LastParameter = 100;
constexpr int OutOfStringSpace = 14;

const std::string NameEnd(1, ScriptNameEnd);
const std::string LineEnd(1, ScriptLineEnd);

std::string firstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

std::size_t countOf(std::string_view text, std::string_view what) {
    std::size_t count = 0;
    for (auto at = text.find(what); at != std::string_view::npos; at = text.find(what, at + what.size()))
        ++count;
    return count;
}

}  // namespace

std::string ScriptNameOf(const std::string& entry) {
    return entry.substr(0, entry.find(ScriptNameEnd));
}

modCommands::modCommands(Platform& platform, GlobError& globError, Session session)
    : platform_(platform), globError_(globError), session_(std::move(session)) {}

// ---- The files

void modCommands::Load() {
    load(ScriptCommandFile, CommandList);
    load(ScriptChannelFile, ChannelMenu);
    load(ScriptPrivateFile, PrivateMenu);
    MenusChanged.raise();
}

void modCommands::load(const char* path, std::vector<std::string>& list) {
    trapped(globError_, "LoadScripts", [&](Trap& step) {
        ScriptEntries entries;
        step([&] { entries = ReadScripts(platform_.ProgramFiles, path); });
        list.clear();
        for (const ScriptEntry& entry : entries.Good) list.push_back(entry.Name + NameEnd + entry.Script);
        if (entries.Damaged.empty()) return;
        throw RuntimeError(static_cast<int>(Fault::InternalError),
                           CStr(entries.Damaged.size()) + " damaged entries in " + path, path);
    });
}

// ---- Running

void modCommands::RunScriptCommand(const std::string& Line, const std::string& Nick, ScriptWindow& Window) {
    trapped(globError_, "RunScriptCommand", [&](Trap& step) {
        const std::string command = UCase(firstWord(Line));
        for (const std::string& entry : CommandList) {
            const auto pieces = Split(entry, NameEnd, 2);
            if (pieces.empty() || UCase(pieces[0]) != command) continue;
            // The list may be another one when the script has run.
            std::string script;
            if (step([&] { script = elementOf(pieces, 1); })) Exec(script, Line, Nick, Window);
            return;
        }
    });
}

std::vector<std::string> modCommands::NamesLike(const std::string& begin) const {
    std::vector<std::string> names;
    for (const std::string& entry : CommandList) {
        const std::string name = ScriptNameOf(entry);
        if (name.size() > begin.size() && UCase(name).starts_with(UCase(begin))) names.push_back(name);
    }
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

void modCommands::RunMenuCommand(const std::vector<std::string>& list, std::size_t index,
                                 const std::string& parameters, const std::string& Nick,
                                 ScriptWindow& Window) {
    trapped(globError_, "mnuCmd_Click", [&](Trap&) {
        const auto pieces = Split(elementOf(list, index), NameEnd, 2);
        // The name is word 0, whatever blanks it has.
        const std::string line = Replace(elementOf(pieces, 0), " ", "_") + " " + parameters;
        Exec(elementOf(pieces, 1), line, Nick, Window);
    });
}

// The three words work in what is typed, and reach a script by its parameters only.
void modCommands::Exec(const std::string& Script, std::string Line, const std::string& Nick,
                       ScriptWindow& Window) {
    trapped(globError_, "Exec", [&](Trap& step) {
        const DateTime now = platform_.WallClock.Now();
        Line = Replace(Line, "%nick", Nick);
        Line = Replace(Line, "%date", GeneralDate(now));
        Line = Replace(Line, "%time", LongTime(now));
        for (const std::string& scriptLine : Split(Script, LineEnd))
            step([&] { runLine(scriptLine, Line, Window); });
    });
}

void modCommands::runLine(const std::string& scriptLine, const std::string& line, ScriptWindow& window) {
    const auto pieces = Split(scriptLine, " ", 2);
    const std::string verb = UCase(elementOf(pieces, 0));
    const std::string rest = OneLine(ReplaceParm(line, elementOf(pieces, 1)));
    if (verb == "NICK") {
        session_.SetNickname(ParmWord(rest, 1));
    } else if (verb == "ECHO") {
        window.ShowEcho(rest);
    } else {
        // No blank between the two: a script that wants one begins what stands behind the verb with it.
        session_.SendIRC(OneLine(verb) + rest);
    }
}

std::string modCommands::ReplaceParm(const std::string& Line, std::string Text) {
    trapped(globError_, "ReplaceParm", [&](Trap&) {
        for (int n = 0; n <= LastParameter && Text.find('%') != std::string::npos; ++n) {
            const std::string parameter = "%" + CStr(n);
            const std::size_t count = countOf(Text, parameter);
            if (count == 0) continue;
            const std::string word = ParmWord(Line, static_cast<std::uint8_t>(n));
            // Words may hold parameters themselves, and so double the text a hundred times over.
            if (Text.size() + count * word.size() > LongestText) {
                Text.clear();
                throw RuntimeError(OutOfStringSpace, "Out of string space");
            }
            Text = Replace(Text, parameter, word);
        }
    });
    return Text;
}

std::string modCommands::ParmWord(std::string_view Text, std::uint8_t Index) {
    const auto words = Split(Text, " ");
    return Index < words.size() ? words[Index] : std::string();
}

}  // namespace talvora
