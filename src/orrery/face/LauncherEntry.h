#pragma once
// The program's entry in the task bar or dock, as far as the desktop has one that shows a bar: how far what
// takes time is, all of it together. It is told by a signal on the session's bus; who doesn't understand it
// misses nothing. Owned by the face.

#include <QDBusConnection>
#include <map>
#include <optional>

namespace talvora {

class Form;

class LauncherEntry {
  public:
    explicit LauncherEntry(const QDBusConnection& bus) : bus_(bus) {}

    // From 0 to 1; nothing ends it. Only what changes the bar by a hundredth is told.
    void Show(const Form& form, std::optional<double> done);

  private:
    void tell(int hundredths);

    QDBusConnection bus_;
    std::map<const Form*, double> underWay_;
    int told_ = Nothing;  // hundredths

    static constexpr int Nothing = -1;
};

}  // namespace talvora
