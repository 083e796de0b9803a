// Shows a conversation and a letter in the views, to be looked at; with --picture FILE it draws them into a
// PNG and ends.

#include <QApplication>
#include <QCommandLineParser>
#include <QPalette>
#include <QSplitter>
#include <QStyleFactory>
#include <fstream>
#include <iterator>

#include "chat/ChatColors.h"
#include "chat/IRCWin.h"
#include "desktop/RichTextView.h"
#include "simulation/VirtualPlatform.h"

namespace {

using namespace talvora;

QPalette darkPalette() {
    QPalette palette(QColor(48, 49, 54), QColor(38, 39, 43));
    palette.setColor(QPalette::Base, QColor(30, 31, 34));
    palette.setColor(QPalette::Text, QColor(220, 220, 220));
    palette.setColor(QPalette::Highlight, QColor(58, 110, 180));
    return palette;
}

// "Καλημέρα" and others, in code page 1253.
const std::string morning = "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1 \xF3\xE5 \xFC\xEB\xEF\xF5\xF2!";
const std::string sea = "\xD0\xDC\xEC\xE5 \xF3\xF4\xE7 \xE8\xDC\xEB\xE1\xF3\xF3\xE1;";

void talk(IRCWin& window) {
    const ChatColors colors;
    const auto says = [&](const std::string& line) {
        window.AddIRCLine(line, colors.ChatForeColor, colors.ChatBackColor);
    };
    const auto own = [&](const std::string& line) {
        window.AddIRCLine(line, colors.OwnForeColor, colors.OwnBackColor);
    };
    window.AddIRCLine("* Nikos has joined #thes", colors.ActionForeColor, colors.ActionBackColor);
    says("<Nikos> " + morning + " :-) ");
    own("<Maria> " + morning + " " + sea + " :-D ");
    says(
        "<Nikos> The boat leaves at \002seven\002 from the \026old\026 harbour, and it will not wait for "
        "anybody who "
        "is still having breakfast; the last time we left \037three\037 people behind, and they were not "
        "amused.");
    says("<Nikos> Times: http://ferries.example/thessaloniki?day=tomorrow and that is \035cheap\035 all.");
    says(
        "<Eleni> \0034,8 red on yellow \003 \0030,2 white on blue \003\0031,0 and \0033green\017 back to "
        "normal");
    own("<Maria> (rose) <3 :-P ;-) and a code in the middle :-) of a line, twice :-) ");
    window.AddIRCLine("A plug-in tells this.", colors.PluginForeColor, colors.PluginBackColor);
    window.AddIRCLine("* Eleni waves", colors.ActionForeColor, colors.ActionBackColor);
}

const char* letter =
    "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\fcharset161 Tahoma;}{\\f1\\fcharset161 Times New "
    "Roman;}"
    "{\\f2\\fcharset161 Courier New;}}{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green96\\blue160;}"
    "\\pard\\qc\\f1\\fs40\\b A letter\\b0\\par\\pard\\sa120\\f0\\fs17\\par Dear \\cf1 Nikos\\cf0 ,\\par "
    "\\pard\\qj\\sa120 this is \\i justified\\i0  text of several lines, with \\b bold\\b0 , \\ul "
    "underlined\\ul0  and "
    "\\strike struck\\strike0  words, so that one can see whether both edges of the column are "
    "straight.\\par "
    "\\pard\\li720\\fi-360\\sa60 1.\\tab A hanging indent, as lists have it: the second line begins below "
    "the first "
    "word and not below the number.\\par 2.\\tab Another one.\\par\\pard\\qr\\f2\\fs20\\cf2 set to the "
    "right\\par}";

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QCommandLineParser options;
    options.addOptions({{"picture", "draws into a PNG and ends", "file"},
                        {"zoom", "of the views", "factor", "1"},
                        {"dark", "a dark desktop"},
                        {"select", "with a selection"}});
    options.process(application);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    if (options.isSet("dark")) QApplication::setPalette(darkPalette());

    test::VirtualTime time;
    test::VirtualNetwork network(time);
    test::VirtualPlatform around(time, network);
    std::ifstream table(TALVORA_SOURCE_DIR "/data/System/emoticons.dat", std::ios::binary);
    around.disk.put("System/emoticons.dat", std::string(std::istreambuf_iterator<char>(table), {}));
    GlobError globError(around.platform);
    modEmotions emotions(around.files, globError);
    emotions.LoadEmotions();
    IRCWin window(around.platform, globError, emotions);
    RichTextBox composer;

    QSplitter both(Qt::Vertical);
    RichTextView chat(window.RichTextBox1, around.screen.clipboard, around.platform.Guarded, &both);
    RichTextView mail(composer, around.screen.clipboard, around.platform.Guarded, &both);
    talk(window);
    composer.SetTextRTF(letter);
    chat.setZoom(options.value("zoom").toDouble());
    mail.setZoom(options.value("zoom").toDouble());
    both.resize(620, 720);
    both.show();
    if (options.isSet("select")) {
        auto& model = window.RichTextBox1;
        const std::uint64_t first = model.Document().FirstNumber();
        model.userSelects({first + 1, 12}, {first + 6, 20});
    }
    if (!options.isSet("picture")) return QApplication::exec();
    QApplication::processEvents();
    return both.grab().save(options.value("picture")) ? 0 : 1;
}
