#include "extensions/frmScripts.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::array<const char*, frmScripts::Tabs> FileOf = {ScriptCommandFile, ScriptChannelFile,
                                                              ScriptPrivateFile};
const std::string BetweenLines(1, ScriptLineEnd);

// Without the characters that part an entry's pieces.
std::string plain(std::string_view text) {
    std::string kept(text);
    std::erase_if(kept, [](char c) { return c == ScriptNameEnd || c == ScriptLineEnd; });
    return kept;
}

std::string scriptOf(const std::string& typed) {
    std::string script = Replace(Replace(plain(typed), "\r\n", BetweenLines), "\r", BetweenLines);
    script = Replace(script, "\n", BetweenLines);
    while (script.ends_with(ScriptLineEnd)) script.pop_back();
    return script;
}

}  // namespace

frmScripts::frmScripts(Platform& platform, GlobError& globError, modCommands& commands)
    : platform_(platform), globError_(globError), commands_(commands) {
    Caption = "Scripts";
    Label3.Caption =
        "From here you can manage the scripts for Talvora. Commands are typed on each private chat window "
        "with "
        "the prefix \"\\\" (ex. \\part), menu commands are inserted on the prespective menus";
    on_ += TabStrip1.Click.connect([this](int) { showTab(); });
    on_ += List1.ListIndex.Changed.connect([this](const int&) { showEntry(); });
    on_ += EntryName.Text.Changed.connect([this](const std::string&) { entryEdited(); });
    on_ += Text1.Text.Changed.connect([this](const std::string&) { entryEdited(); });
    on_ += Add.Click.connect([this] { add(); });
    on_ += Remove.Click.connect([this] { remove(); });
    on_ += Ok.Click.connect([this] { accept(); });
    on_ += Cancel.Click.connect([this] { Unload(); });
}

void frmScripts::Form_Load() {
    trapped(globError_, "frmScripts.Form_Load", [&](Trap& step) {
        for (std::size_t tab = 0; tab < Tabs; ++tab)
            read_[tab] = step([&] { tabs_[tab] = ReadScripts(platform_.ProgramFiles, FileOf[tab]); });
        showTab();
    });
}

// ---- The entries of a tab

ScriptEntry* frmScripts::chosen() {
    const int index = List1.ListIndex;
    auto& entries = tab().Good;
    return index >= 0 && std::cmp_less(index, entries.size()) ? &entries[static_cast<std::size_t>(index)]
                                                              : nullptr;
}

void frmScripts::showTab() {
    List1.Clear();
    for (const ScriptEntry& entry : tab().Good) List1.AddItem(entry.Name);
    if (List1.ListCount() > 0) List1.ListIndex = 0;
    showEntry();
}

void frmScripts::showEntry() {
    const ScriptEntry* const entry = chosen();
    showing_ = true;
    EntryName.Text = entry != nullptr ? entry->Name : "";
    Text1.Text = entry != nullptr ? Replace(entry->Script, BetweenLines, "\r\n") : "";
    showing_ = false;
    for (auto* enabled : {&EntryName.Enabled, &Text1.Enabled, &Remove.Enabled}) *enabled = entry != nullptr;
    Problem.Caption = entry != nullptr ? problemOf(*entry, TabStrip1.Selected) : "";
}

void frmScripts::entryEdited() {
    ScriptEntry* const entry = chosen();
    if (showing_ || entry == nullptr) return;
    entry->Name = OneLine(plain(EntryName.Text.get()));
    entry->Script = scriptOf(Text1.Text);
    List1.SetItem(List1.ListIndex, entry->Name);
    Problem.Caption = problemOf(*entry, TabStrip1.Selected);
}

void frmScripts::add() {
    tab().Good.push_back({"new", "ECHO %0"});
    List1.AddItem("new");
    List1.ListIndex = List1.ListCount() - 1;
    EntryName.SetFocus();
}

void frmScripts::remove() {
    const int index = List1.ListIndex;
    if (index < 0) return;
    tab().Good.erase(tab().Good.begin() + index);
    List1.RemoveItem(index);
    if (List1.ListCount() > 0) List1.ListIndex = std::min(index, List1.ListCount() - 1);
    showEntry();
}

// ---- The end

std::string frmScripts::problemOf(const ScriptEntry& entry, int tab) const {
    if (Trim(entry.Name).empty()) return "An entry needs a name.";
    if (tab == 0 && entry.Name.find(' ') != std::string::npos)
        return "A command is one word: what stands behind a blank is a parameter.";
    const auto lines = Split(entry.Script, BetweenLines);
    if (lines.empty()) return "There is no command yet.";
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (lines[line].find(' ') == std::string::npos)
            return "Line " + CStr(line + 1) + " is a verb with nothing behind it, not even a blank.";
    }
    return "";
}

// Goes to the first entry that can't work.
bool frmScripts::findProblem() {
    for (int tab = 0; tab < Tabs; ++tab) {
        const auto& entries = tabs_[static_cast<std::size_t>(tab)].Good;
        const auto bad =
            std::ranges::find_if(entries, [&](const ScriptEntry& e) { return !problemOf(e, tab).empty(); });
        if (bad == entries.end()) continue;
        TabStrip1.Selected = tab;
        showTab();
        List1.ListIndex = static_cast<int>(bad - entries.begin());
        return true;
    }
    return false;
}

void frmScripts::accept() {
    trapped(globError_, "frmScripts.OK_Click", [&](Trap& step) {
        if (findProblem()) return;
        for (std::size_t tab = 0; tab < Tabs; ++tab)
            if (read_[tab]) step([&] { WriteScripts(platform_.ProgramFiles, FileOf[tab], tabs_[tab]); });
        commands_.Load();
        if (!IsUnloaded()) Unload();
    });
}

}  // namespace talvora
