// Script commands, their files on a disk, and the window that keeps them.

#include <cerrno>
#include <fstream>
#include <map>

#include "Vocabulary.h"
#include "extensions/frmScripts.h"
#include "platform/Text.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

class ScriptTest : public testing::Test, public VirtualMachine, public ScriptWindow {
  protected:
    ScriptTest() { around.questions.answerFaults(Answer::Abort); }
    void ShowEcho(const std::string& text) override { done.push_back("shown " + text); }
    Texts run(const std::string& line) {
        done.clear();
        commands.RunScriptCommand(line, "Anna", *this);
        return done;
    }
    void put(const char* name, const std::string& text) {
        around.disk.put(std::string("System/") + name, text);
    }
    std::string content(const char* name) {
        return around.disk.content(std::string("System/") + name).value_or("none");
    }

    Texts done;
    modCommands commands{around.platform,
                         globError,
                         {[this](const std::string& line) { done.push_back("sent " + line); },
                          [this](const std::string& nick) { done.push_back("nick " + nick); }}};
};

TEST_F(ScriptTest, RunTheFirstEntryOfAName) {
    EXPECT_THAT(run("part"), IsEmpty());
    commands.CommandList = {"greet\1ECHO hello %1",       "hi\1PRIVMSG %1 :hi\2privmsg  %1 :%2",
                            "GREET\1ECHO never",          "me\1nick x %1\2NICK %1",
                            "words\1ECHO %0 %10 %3 %100", "bare\1QUIT\2ECHO on"};
    EXPECT_THAT(run("GREET bob"), ElementsAre("shown hello bob"));
    EXPECT_THAT(run("hi bob %nick"), ElementsAre("sent PRIVMSGbob :hi", "sent PRIVMSG bob :Anna"));
    EXPECT_THAT(run("hi a\r\nQUIT x"), ElementsAre("sent PRIVMSGaQUIT :hi", "sent PRIVMSG aQUIT :x"));
    EXPECT_THAT(run("me Eva"), ElementsAre("nick Eva", "nick "));
    EXPECT_THAT(run("Words %NICK b"), ElementsAre("shown Words %NICK0  %NICK00"));
    EXPECT_THAT(run("greet %date"), ElementsAre("shown hello 14/03/2026"));
    EXPECT_THAT(run("greet %time"), ElementsAre(HasSubstr("hello 09:00:0")));
    EXPECT_THAT(run(""), IsEmpty());
    EXPECT_THAT(around.questions.asked, IsEmpty());
    // A verb with nothing behind it is a fault of its line; Ignore goes on behind it.
    around.questions.answerFaults(Answer::Ignore);
    EXPECT_THAT(run("bare"), ElementsAre("shown on"));
    std::string doubling = "greet";
    for (int n = 1; n <= 60; ++n) doubling += " %" + CStr(n + 1) + "%" + CStr(n + 1);
    EXPECT_THAT(run(doubling), ElementsAre("shown "));
    EXPECT_EQ(around.questions.asked.size(), 2u);
}

// The texts between backquotes in a cell, each behind the word that stands in front of it.
Texts codeIn(const std::string& cell) {
    const std::map<std::string, std::string> words = {
        {"shows", "shown "}, {"sends", "sent "}, {"nick", "nick "}};
    Texts texts;
    const auto pieces = Split(cell, "`");
    for (std::size_t at = 1; at < pieces.size(); at += 2) {
        const std::string before = Trim(pieces[at - 1]);
        const auto word = words.find(before.substr(before.rfind(' ') + 1));
        texts.push_back((word != words.end() ? word->second : "") + pieces[at]);
    }
    return texts;
}

TEST_F(ScriptTest, TheDocumentsExamplesDoWhatItSays) {
    std::ifstream page(TALVORA_DOCS "/scripts.md");
    int examples = 0;
    for (std::string line; std::getline(page, line);) {
        const auto cells = Split(line, "|");
        if (cells.size() != 6 || codeIn(cells[4]).empty()) continue;
        std::string entry = codeIn(cells[1]).at(0);
        for (const std::string& command : codeIn(cells[2]))
            entry += (entry.find('\1') == std::string::npos ? '\1' : '\2') + command;
        done.clear();
        commands.CommandList = {entry};
        if (const Texts typed = codeIn(cells[3]); !typed.empty()) {
            commands.RunScriptCommand(typed[0].substr(1), "Anna", *this);
        } else {
            const bool channel = cells[3].find("channel") != std::string::npos;
            commands.RunMenuCommand({entry}, 0, channel ? "Bob #Greek" : "Bob", "Bob", *this);
        }
        EXPECT_EQ(done, codeIn(cells[4])) << line;
        ++examples;
    }
    EXPECT_EQ(examples, 10);
}

TEST_F(ScriptTest, ADamagedFileCostsItsDamagedEntriesAndKeepsThem) {
    put("script_cmd.dat", "one\1ECHO 1\r\nrubbish\r\n\r\n\1ECHO none\r\ntwo\1ECHO \xE1\t\x07\r\n");
    put("script_chm.dat", "Kick them\1KICK  %2 %1");
    commands.Load();
    EXPECT_THAT(around.questions.asked, ElementsAre(HasSubstr("2 damaged entries")));
    EXPECT_THAT(run("two"), ElementsAre("shown \xE1\t\x07"));
    commands.RunMenuCommand(commands.ChannelMenu, 0, "bob #Greek", "bob", *this);
    EXPECT_EQ(done.back(), "sent KICK #Greek bob");
    commands.RunMenuCommand(commands.ChannelMenu, 1, "bob #Greek", "bob", *this);
    EXPECT_EQ(around.questions.asked.size(), 2u);
    frmScripts form(around.platform, globError, commands);
    form.Form_Load();
    form.Ok.Click.raise();
    EXPECT_EQ(content("script_cmd.dat"), "one\1ECHO 1\r\ntwo\1ECHO \xE1\t\x07\r\nrubbish\r\n\1ECHO none\r\n");
}

TEST_F(ScriptTest, TheWindowAddsRenamesAndRemovesAndSaysWhatCannotWork) {
    put("script_cmd.dat", "part\1PART  %1\2ECHO gone\r\n");
    frmScripts form(around.platform, globError, commands);
    form.Form_Load();
    EXPECT_EQ(form.Text1.Text.get(), "PART  %1\r\nECHO gone");
    form.Add.Click.raise();
    form.EntryName.Text = "";
    EXPECT_THAT(form.Problem.Caption.get(), HasSubstr("needs a name"));
    form.TabStrip1.userClicks(1);
    form.Add.Click.raise();
    form.EntryName.Text = "Say hello";
    form.Text1.Text = "NOTICE  %1 :hello\r\nWHOIS\r\n";
    EXPECT_THAT(form.Problem.Caption.get(), HasSubstr("Line 2"));
    form.Ok.Click.raise();
    // Nothing is written while an entry can't work, and the first one stands there to be mended.
    EXPECT_EQ(content("script_chm.dat"), "none");
    EXPECT_EQ(form.TabStrip1.Selected.get() + form.List1.ListIndex, 1);
    EXPECT_FALSE(form.IsUnloaded());
    form.EntryName.Text = "two words";
    EXPECT_THAT(form.Problem.Caption.get(), HasSubstr("one word"));
    form.Remove.Click.raise();
    form.List1.ListIndex = 0;
    form.EntryName.Text = "le\1ave";
    EXPECT_EQ(form.List1.List(0), "leave");
    form.TabStrip1.userClicks(1);
    form.Text1.Text = "NOTICE  %1 :hello\r\nMADEUP x";
    int changes = 0;
    const Subscription heard = commands.MenusChanged.connect([&] { ++changes; });
    form.Ok.Click.raise();
    EXPECT_TRUE(form.IsUnloaded());
    EXPECT_EQ(content("script_cmd.dat") + content("script_chm.dat") + content("script_pmm.dat"),
              "leave\1PART  %1\2ECHO gone\r\nSay hello\1NOTICE  %1 :hello\2MADEUP x\r\n");
    EXPECT_EQ(commands.ChannelMenu.size() + static_cast<std::size_t>(changes), 2u);
    // What could not be read is not written over.
    frmScripts other(around.platform, globError, commands);
    around.disk.failAt(0, EIO);
    other.Form_Load();
    other.Ok.Click.raise();
    EXPECT_THAT(content("script_cmd.dat"), HasSubstr("leave"));
}

}  // namespace
}  // namespace talvora::test
