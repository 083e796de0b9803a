// The stream of a file transfer and both ends that read it. The first byte says who is played and how the
// bytes are cut, and whether there is only the stream; in the rest a byte of 2 stands for the delimiter, 3
// lets time pass, 4 has the user accept or retry, 5 has him abort. Whatever comes: the stream gives what a
// plain search gives, nothing is written outside `Received\` or before "Accept", and the user is asked a
// bounded number of times.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/World.h"

namespace {

using namespace talvora;
using namespace talvora::test;
using namespace std::chrono_literals;

void check(bool holds) {
    if (!holds) std::abort();
}

// The same by reading everything anew.
void checkStream(std::string_view text, std::size_t cut) {
    TransferStream stream;
    std::string pending;
    for (std::size_t at = 0, piece = 0; at < text.size(); at += piece) {
        piece = std::min(text.size() - at, 1 + (at * 7 + cut) % (cut + 1));
        const std::string_view chunk = text.substr(at, piece);
        pending += chunk;
        const bool whole = stream.Feed([&](std::string& to) { to += chunk; }) == TransferStream::Fed::Whole;
        check(whole == (chunk.find(TransferStream::Delimiter) != std::string_view::npos));
        for (std::string message; whole && !stream.IsEmpty() && !stream.IsTorn();) {
            stream.Next(message);
            const std::size_t end = pending.find(TransferStream::Delimiter);
            check(message == pending.substr(0, end));
            pending.erase(0, end + TransferStream::Delimiter.size());
        }
        check(!whole || pending.find(TransferStream::Delimiter) == std::string::npos);
    }
}

class Victim {
  public:
    Victim() : client_(world_.client("V")) {
        client_.around.disk.put("Received/old", "old");
        client_.around.questions.answerFaults(Answer::Ignore);
        for (int i = 0; i < mostBoxes; ++i) client_.around.questions.willAnswer(Answer::Ok);
    }
    ~Victim() { client_.around.questions = {}; }

    void receives(std::string_view text, std::size_t cut) {
        Winsock stranger(client_.around.platform.Guarded, world_.network.CreateSocket({}));
        stranger.RemoteHost = client_.profile.ReceiveAddress;
        stranger.RemotePort = TransferPort;
        stranger.Connect();
        run(0s);
        auto& form = *desk().Receiver.Get();
        bool accepted = false;
        play(
            text, cut,
            [&](std::string_view piece) {
                if (stranger.State() == SocketState::Connected) stranger.SendData(piece);
                run(0s);
                if (!accepted) check(client_.around.disk.content("Received/old") == "old" && files() == 1);
            },
            [&](bool yes) {
                accepted = true;  // an abort of the user's may delete
                (yes ? form.Command2 : form.Command1).Click.raise();
            });
        for (const auto& path : client_.around.disk.paths())
            check(path.starts_with("Received/") || path.starts_with(".waste/") ||
                  path.starts_with("System/"));
    }

    void sends(std::string_view text, std::size_t cut) {
        ScriptedServer& receiver = world_.network.server("evil", TransferPort);
        client_.around.disk.picked["/f"] = std::string(3000, 'f');
        frmTransferStatus& form = desk().Status.Load();
        form.SendList("/f|/gone|/f", "evil");
        run(0s);
        play(
            text, cut,
            [&](std::string_view piece) {
                receiver.sends(std::string(piece));
                run(0s);
            },
            [&](bool yes) {
                if (desk().Status.Get() == &form) (yes ? form.Command2 : form.Command1).Click.raise();
            });
        check(receiver.transcript.size() <= (text.size() + 8) * 2000);
    }

  private:
    static constexpr int mostBoxes = 400;

    TransferDesk& desk() { return client_.component->Transfers(); }
    void run(std::chrono::seconds time) { world_.time.run(time); }
    int files() const {
        int count = 0;
        for (const auto& path : client_.around.disk.paths()) count += path.starts_with("System/") ? 0 : 1;
        return count;
    }

    template <class Send, class Press>
    void play(std::string_view text, std::size_t cut, Send&& send, Press&& press) {
        std::string piece;
        const auto leave = [&] {
            if (!piece.empty()) send(std::exchange(piece, {}));
        };
        for (const char c : text) {
            if (c >= 3 && c <= 5) leave();
            if (c == 3) run(7s);
            if (c == 4 || c == 5) press(c == 4);
            if (c >= 3 && c <= 5) continue;
            if (c == 2)
                piece += TransferStream::Delimiter;
            else
                piece += c;
            if (cut != 0 && piece.size() >= cut) leave();
        }
        leave();
        run(70s);
    }

    World world_;
    Client& client_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 4096) return 0;
    const std::size_t cut = data[0] & 31U;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::string plain;
    for (const char c : text) c == 2 ? plain += TransferStream::Delimiter : plain += c;
    checkStream(plain, cut);
    // Two whole worlds cost a thousand streams.
    if ((data[0] & 192U) != 0) return 0;
    Victim victim;
    (data[0] & 32U) != 0 ? victim.sends(text, cut) : victim.receives(text, cut);
    return 0;
}
