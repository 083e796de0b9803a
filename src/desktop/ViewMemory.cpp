#include "desktop/ViewMemory.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/RuntimeError.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr const char* Application = "Talvora Desktop";
constexpr const char* Section = "Windows";
constexpr int WriteDelay = 1000;     // milliseconds
constexpr int SmallestWindow = 120;  // pixels
constexpr int LargestWindow = 16384;

}  // namespace

ViewMemory::~ViewMemory() {
    write();
}

std::string ViewMemory::value(const std::string& key) const {
    const auto found = unwritten_.find(key);
    return found != unwritten_.end() ? found->second : store_.GetSetting(Application, Section, key, "");
}

void ViewMemory::keep(const std::string& key, const std::string& value) {
    if (this->value(key) == value) return;
    unwritten_[key] = value;
    writing_.start(WriteDelay, this);
}

QSize ViewMemory::size(const std::string& kind, QSize standard) const {
    const auto parts = Split(value("Size_" + kind), "x");
    if (parts.size() != 2) return standard;
    const auto pixels = [](const std::string& text) {
        return static_cast<int>(std::clamp<double>(Val(text), SmallestWindow, LargestWindow));
    };
    return {pixels(parts[0]), pixels(parts[1])};
}

void ViewMemory::keepSize(const std::string& kind, QSize size) {
    keep("Size_" + kind, std::to_string(size.width()) + "x" + std::to_string(size.height()));
}

double ViewMemory::zoom(const std::string& kind) const {
    const double percent = Val(value("Zoom_" + kind));
    return percent > 0 ? percent / 100 : 1;
}

void ViewMemory::keepZoom(const std::string& kind, double zoom) {
    keep("Zoom_" + kind, std::to_string(std::lround(zoom * 100)));
}

void ViewMemory::timerEvent(QTimerEvent*) {
    writing_.stop();
    write();
}

// A store that cannot be written to costs no more than the memory of a size.
void ViewMemory::write() {
    for (const auto& [key, value] : std::exchange(unwritten_, {})) {
        try {
            store_.SaveSetting(Application, Section, key, value);
        } catch (const RuntimeError&) {
            return;
        }
    }
}

}  // namespace talvora
