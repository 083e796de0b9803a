// Chat lines through the control characters, the emoticons and the reading of what they became, one after the
// other in one view. Whatever they hold, the text stays bounded and the line behind them can be read.

#include <cstdlib>

#include "chat/IRCWin.h"
#include "platform/Text.h"
#include "simulation/VirtualPlatform.h"

using namespace talvora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::VirtualTime time;
    test::VirtualNetwork network(time);
    test::VirtualPlatform around(time, network);
    around.questions.answerFaults(Answer::Ignore);
    around.disk.put(
        "System/emoticons.dat",
        ":-):=:{\\pict\\pngblip\\picwgoal300 [#13]89504e47}\r\n;):=:{\\b :-) }\r\nx{:=:}{\\v \r\n");
    GlobError globError(around.platform);
    modEmotions emotions(around.files, globError);
    emotions.LoadEmotions();
    IRCWin view(around.platform, globError, emotions);
    view.TruncSize = 2000;
    for (const std::string& line : Split(std::string(reinterpret_cast<const char*>(data), size), "\n")) {
        view.AddIRCLine(line, 3, 2);
        const std::size_t shown = view.Document().size() + view.RichTextBox1.Text().size();
        if (shown > 100 * (size + 2000)) std::abort();
    }
    view.AddIRCLine("good", 3, 2);
    if (view.RichTextBox1.Text().find("good \r\n") == std::string::npos) std::abort();
    return 0;
}
