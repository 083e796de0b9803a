#include "transfer/TransferMeter.h"

#include <algorithm>
#include <string>

#include "platform/Text.h"
#include "transfer/FormatBit.h"

namespace talvora {

namespace {

constexpr Microseconds BetweenWords = 1'000'000 / 30;

std::string sizeInWords(std::int64_t bytes) {
    return FormatBit(static_cast<double>(bytes)) + (bytes > 1024 ? "" : "ytes");
}

std::string durationInWords(std::int64_t seconds) {
    const auto count = [](std::int64_t number, const char* unit) {
        return CStr(number) + " " + unit + (number == 1 ? "" : "s");
    };
    if (seconds < 60) return count(seconds, "second");
    return seconds < 3600 ? count(seconds / 60, "minute") : count(seconds / 3600, "hour");
}

std::string inWords(const TransferProgress& at) {
    if (at.File == 0) return {};
    std::string words = "File " + CStr(at.File) + " of " + CStr(at.Files) + ": " + sizeInWords(at.Done) +
                        " of " + sizeInWords(at.Size);
    if (at.SecondsLeft) words += ", " + durationInWords(*at.SecondsLeft) + " left";
    return words;
}

}  // namespace

void TransferMeter::Begin(std::int32_t file, std::int32_t files, std::int64_t size) {
    now_ = {file, std::max(file, files), 0, std::max<std::int64_t>(size, 0), now_.PerSecond, {}};
    publish();
}

void TransferMeter::Moved(std::int64_t done) {
    now_.Done = std::clamp<std::int64_t>(done, 0, now_.Size);
    if (now_.Done == now_.Size || loop_.Now() - told_ >= BetweenWords) publish();
}

void TransferMeter::Second(std::int64_t bytes) {
    if (now_.File == 0) return;
    now_.PerSecond = now_.PerSecond == 0 ? bytes : (now_.PerSecond + bytes) / 2;
    now_.SecondsLeft.reset();
    if (now_.PerSecond > 0) now_.SecondsLeft = (now_.Size - now_.Done + now_.PerSecond - 1) / now_.PerSecond;
    publish();
}

void TransferMeter::End() {
    now_ = {};
    publish();
}

void TransferMeter::publish() {
    told_ = loop_.Now();
    lblProgress.Caption = inWords(now_);
    Progress = now_;
}

}  // namespace talvora
