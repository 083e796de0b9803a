#pragma once
// A screen of the test's own, with a window manager, and hands that work on it.

#include <memory>
#include <string>
#include <vector>

#include "simulation/programs/Process.h"

namespace talvora::programs {

class Screen {
  public:
    // Why there can be none on this machine; "" if there can.
    static std::string whyNot();

    Screen();

    // What a program needs to show its windows here, and to find no desktop but this one.
    std::vector<std::string> environment() const;
    // Waits for a visible window whose title is that, and returns its number.
    std::string expectWindow(const std::string& title) const;
    std::string activeTitle() const;
    void expectActive(const std::string& title) const;
    // Where a visible window stands, as "X,Y WIDTHxHEIGHT" in pixels; waits until it stands there.
    void expectPlace(const std::string& title, const std::string& place) const;
    void expectNoWindow(const std::string& title) const;
    void movePointer(int x, int y) const;
    void click() const;
    // As from the keyboard, into the active window.
    void type(const std::string& text) const;
    void press(const std::string& key) const;
    void activate(const std::string& window) const;
    // As by the close box.
    void close(const std::string& window) const;

  private:
    std::string visible(const std::string& title) const;
    std::string run(std::vector<std::string> words, bool mayFail = false, bool whole = false) const;

    std::unique_ptr<Process> server_;
    std::unique_ptr<Process> manager_;
    std::string display_;
};

}  // namespace talvora::programs
