// orreryctl: the gate from the shell.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "common/Version.h"
#include "gate/GateClient.h"
#include "gate/GateJson.h"
#include "gate/Places.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

constexpr const char* Help = R"(Usage: orreryctl [--gate PATH] watch [MSGID...]
       orreryctl [--gate PATH] send [--to ID] [--json DATA] MSGID [DATA...]

watch   prints each host message as one line of JSON, only those with the
        numbers given, if any. Ends on an interrupt or when the host goes.
send    broadcasts a host message and ends when the host has handled it.

  --gate PATH  the socket of the host's gate; without it
               $XDG_RUNTIME_DIR/talvora/gate
  --to ID      the addressee, without it -1: everybody
  --json DATA  a JSON value as the message's data
  --           what follows is no option
  --help       this text
  --version    the version

DATA words are texts, digits too: no word sends null, one word that text,
several words an array of texts. Numbers, truth values and arrays of one go by
--json.

Exit status: 0 done; 1 no gate, or it complained; 2 wrong usage.
)";

struct Usage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Order {
    std::string gate = defaultGatePath();
    std::optional<std::int32_t> to;
    std::optional<std::string> json;
    std::vector<std::string> words;  // the command and its operands
};

std::int32_t integer(const std::string& word) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc{} || end != word.data() + word.size()) {
        throw Usage("\"" + word + "\" is no 32-bit integer");
    }
    return number;
}

Order orderOf(std::span<char* const> words) {
    Order order;
    bool options = true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string word = words[i];
        if (!options || !word.starts_with("--")) {
            order.words.push_back(word);
            continue;
        }
        if (word == "--") {
            options = false;
            continue;
        }
        if (word != "--gate" && word != "--to" && word != "--json") throw Usage("unknown option " + word);
        if (++i == words.size()) throw Usage("option " + word + " needs a value");
        if (word == "--gate") order.gate = words[i];
        if (word == "--to") order.to = integer(words[i]);
        if (word == "--json") order.json = words[i];
    }
    return order;
}

HostValue dataOf(const Order& order) {
    const auto words = std::span(order.words).subspan(2);
    if (order.json) {
        if (!words.empty()) throw Usage("--json stands in place of DATA words");
        auto value = readValue(*order.json);
        if (!value) throw Usage("--json needs null, a number, a text, a truth value or an array of these");
        return *value;
    }
    if (words.empty()) return {};
    if (words.size() == 1) return fromUtf8(words[0]);
    HostArray texts;
    for (const std::string& word : words) texts.emplace_back(fromUtf8(word));
    return texts;
}

int send(const Order& order) {
    if (order.words.size() < 2) throw Usage("send needs a MSGID");
    HostMessage message;
    message.MsgID = integer(order.words[1]);
    message.ToID = order.to.value_or(HostAddress::Everybody);
    message.Tag = "orreryctl";
    message.Data = dataOf(order);
    std::string lines;
    appendMessage(lines, message);
    // Lines are handled in their order, so the complaint about the empty one says that the first is done.
    lines += "\n\n";

    GateClient gate(order.gate);
    std::string line;
    if (gate.send(lines)) {
        while (gate.readLine(line)) {
            const auto error = readError(line);
            if (!error) continue;
            if (*error == GateEmptyLine) return 0;
            std::fprintf(stderr, "orreryctl: %s\n", toUtf8(*error).c_str());
            return 1;
        }
    }
    std::fputs("orreryctl: the gate closed before the message was handled\n", stderr);
    return 1;
}

int watch(const Order& order) {
    if (order.to || order.json) throw Usage("--to and --json belong to send");
    std::vector<std::int32_t> wanted;
    for (std::size_t i = 1; i < order.words.size(); ++i) wanted.push_back(integer(order.words[i]));
    std::setvbuf(stdout, nullptr, _IOFBF, std::size_t{256} << 10);

    GateClient gate(order.gate);
    std::string line;
    while (gate.readLine(line)) {
        if (const auto error = readError(line)) {
            std::fprintf(stderr, "orreryctl: %s\n", toUtf8(*error).c_str());
            return 1;
        }
        const auto number = peekMsgID(line);
        if (wanted.empty() || (number && std::find(wanted.begin(), wanted.end(), *number) != wanted.end())) {
            line += '\n';
            std::fwrite(line.data(), 1, line.size(), stdout);
        }
        if (gate.drained() && std::fflush(stdout) != 0) return 1;
    }
    return 0;
}

int run(std::span<char* const> words) {
    for (const std::string word : words) {
        if (word == "--") break;
        if (word == "--help") return std::fputs(Help, stdout) < 0 ? 1 : 0;
        if (word == "--version") return std::printf("orreryctl %s\n", Version::text().c_str()) < 0 ? 1 : 0;
    }
    const Order order = orderOf(words);
    if (order.words.empty()) throw Usage("watch or send?");
    if (order.words[0] == "watch") return watch(order);
    if (order.words[0] == "send") return send(order);
    throw Usage("unknown command " + order.words[0]);
}

}  // namespace
}  // namespace talvora

int main(int argc, char** argv) {
    try {
        return talvora::run(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    } catch (const talvora::Usage& error) {
        std::fprintf(stderr, "orreryctl: %s (--help tells more)\n", error.what());
        return 2;
    } catch (const std::system_error& error) {
        std::fprintf(stderr, "orreryctl: no gate: %s\n", error.what());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orreryctl: %s\n", error.what());
        return 1;
    }
}
