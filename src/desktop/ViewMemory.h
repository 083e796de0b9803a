#pragma once
// What the windows remember from one day to the next: sizes and zoom, by the kind of window. It is kept in
// the settings store under an application of its own. A value that changes in quick succession is written
// once.

#include <QBasicTimer>
#include <QObject>
#include <QSize>
#include <map>
#include <string>

#include "platform/Guard.h"
#include "platform/SettingsStore.h"

namespace talvora {

class ViewMemory final : public QObject {
  public:
    explicit ViewMemory(SettingsStore& store) : store_(store) {}
    ~ViewMemory() override;

    QSize size(const std::string& kind, QSize standard) const;
    void keepSize(const std::string& kind, QSize size);
    double zoom(const std::string& kind) const;
    void keepZoom(const std::string& kind, double zoom);

  protected:
    void timerEvent(QTimerEvent* event) override;

  private:
    std::string value(const std::string& key) const;
    void keep(const std::string& key, const std::string& value);
    void write();

    SettingsStore& store_;
    std::map<std::string, std::string> unwritten_;
    QBasicTimer writing_;
};

}  // namespace talvora
