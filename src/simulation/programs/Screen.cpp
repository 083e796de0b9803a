#include "simulation/programs/Screen.h"

#include <filesystem>
#include <sstream>

namespace talvora::programs {

namespace {

constexpr const char* Xvfb = "/usr/bin/Xvfb";
constexpr const char* Openbox = "/usr/bin/openbox";
constexpr const char* Xdotool = "/usr/bin/xdotool";
constexpr int ScreenPeriod = 50;  // milliseconds; a screen has no sign for what comes onto it

// The server writes it in a line of its own, perhaps after complaints.
std::string displayNumber(Process& server) {
    const Deadline deadline(Patience);
    while (!deadline.passed()) {
        std::istringstream lines(server.output());
        for (std::string line; std::getline(lines, line) && !lines.eof();) {
            if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) return line;
        }
        server.idle(ScreenPeriod);
    }
    throw Missing("no display. The server wrote:\n" + server.output());
}

}  // namespace

std::string Screen::whyNot() {
    for (const char* program : {Xvfb, Openbox, Xdotool}) {
        if (!std::filesystem::exists(program)) return std::string(program) + " is not installed";
    }
    return "";
}

Screen::Screen() {
    Program server;
    server.arguments = {Xvfb, "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten", "tcp"};
    server_ = std::make_unique<Process>(server);
    display_ = ":" + displayNumber(*server_);
    Program manager;
    manager.arguments = {Openbox,         "--sm-disable",
                         "--config-file", "/etc/xdg/openbox/rc.xml",
                         "--startup",     "echo the manager is there"};
    manager.environment = environment();
    manager_ = std::make_unique<Process>(manager);
    manager_->expectOutput("the manager is there");  // a window that comes while it starts may never be shown
}

std::vector<std::string> Screen::environment() const {
    return {"DISPLAY=" + display_, "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=xcb",
            "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent", "ASAN_OPTIONS=detect_leaks=0"};
}

std::string Screen::run(std::vector<std::string> words, bool mayFail, bool whole) const {
    Program program;
    program.arguments = {Xdotool};
    program.arguments.insert(program.arguments.end(), words.begin(), words.end());
    program.environment = environment();
    Process process(program);
    const int status = process.waitExit();
    if (status != 0 && !mayFail) throw Missing("xdotool " + words.front() + " failed: " + process.output());
    const std::string& output = process.output();
    return whole ? output : output.substr(0, output.find('\n'));
}

// Nothing while there is none.
std::string Screen::visible(const std::string& title) const {
    const std::string found = run({"search", "--onlyvisible", "--name", "^" + title + "$"}, true);
    return found.find_first_not_of("0123456789") == std::string::npos ? found : "";
}

std::string Screen::expectWindow(const std::string& title) const {
    const Deadline deadline(Patience);
    while (!deadline.passed()) {
        const std::string found = visible(title);
        if (!found.empty()) return found;
        manager_->idle(ScreenPeriod);
    }
    throw Missing("no window is called " + title);
}

void Screen::expectNoWindow(const std::string& title) const {
    const Deadline deadline(Patience);
    while (!visible(title).empty()) {
        if (deadline.passed()) throw Missing(title + " does not go");
        manager_->idle(ScreenPeriod);
    }
}

void Screen::expectPlace(const std::string& title, const std::string& place) const {
    const Deadline deadline(Patience);
    std::string last;
    while (!deadline.passed()) {
        const std::string window = visible(title);
        // Its lines are words in front of numbers: window, position, size.
        std::istringstream words(window.empty() ? "" : run({"getwindowgeometry", window}, true, true));
        std::string word, position, size;
        while (words >> word) {
            if (word == "Position:") words >> position;
            if (word == "Geometry:") words >> size;
        }
        last = position + " " + size;
        if (last == place) return;
        manager_->idle(ScreenPeriod);
    }
    throw Missing(title + " stands at " + last + ", not at " + place);
}

std::string Screen::activeTitle() const {
    return run({"getactivewindow", "getwindowname"}, true);
}

void Screen::expectActive(const std::string& title) const {
    const Deadline deadline(Patience);
    while (activeTitle() != title) {
        if (deadline.passed()) throw Missing("the active window is not " + title + " but " + activeTitle());
        manager_->idle(ScreenPeriod);
    }
}

void Screen::type(const std::string& text) const {
    run({"type", "--delay", "5", text});
}

void Screen::press(const std::string& key) const {
    run({"key", key});
}

void Screen::movePointer(int x, int y) const {
    run({"mousemove", std::to_string(x), std::to_string(y)});
}

void Screen::click() const {
    run({"click", "1"});
}

void Screen::activate(const std::string& window) const {
    run({"windowactivate", "--sync", window});
}

void Screen::close(const std::string& window) const {
    run({"windowactivate", "--sync", window});
    run({"key", "alt+F4"});
}

}  // namespace talvora::programs
