// Cipher texts from any bytes: what is no text of the cipher is a fault or rubbish and nothing else, and what
// was encrypted comes back. The input is the key, a NUL, and the text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "extensions/modEncryption.h"
#include "platform/RuntimeError.h"
#include "platform/TimerQueue.h"

namespace {

using namespace talvora;

struct StillLoop final : Loop {
    Microseconds Now() const override { return 0; }
    void Defer(std::function<void()>) override {}
    void Pump() override {}
    void Yield() override {}
    TimerQueue& Timers() override { return timers; }
    void TimersChanged() override {}
    TimerQueue timers{TimerQueue::OneMillisecond::Exact};
};

struct StillClock final : Clock {
    DateTime Now() const override { return {}; }
    double SecondsSinceMidnight() const override { return 12345.5; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string key = input.substr(0, input.find('\0'));
    const std::string text = key.size() < input.size() ? input.substr(key.size() + 1) : std::string();
    StillLoop loop;
    const StillClock clock;
    Random random;
    modEncryption cipher(random, loop, clock);
    std::string given = key;
    try {
        cipher.DCGDecryptText(text, given);
        cipher.DCGDecryptText("^" + text, given = key);
    } catch (const RuntimeError&) {
        given.clear();
    }
    try {
        const std::string secret = cipher.DCGEncryptText(text, given = key);
        if (secret.size() != 2 * text.size() + 3) std::abort();
        if (cipher.DCGDecryptText(secret, given = key) != text) std::abort();
    } catch (const RuntimeError&) {
        if (!key.empty() && key.size() <= modEncryption::LongestKey) std::abort();
    }
    return 0;
}
