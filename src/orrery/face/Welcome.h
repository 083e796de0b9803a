#pragma once
// What a person is asked at the very first start, and nothing else: nick, location path, network.

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <string>

#include "platform/SettingsStore.h"
#include "profile/NetworkProfile.h"

namespace talvora {

// Whether nobody has yet said who he is.
bool isFirstStart(const SettingsStore& store);

class Welcome final : public QDialog {
  public:
    // The profile's server and port are offered; what is entered goes into the store, the profile and its
    // file.
    Welcome(SettingsStore& store, NetworkProfile& profile, std::string profileFile);

    // Saves and closes, or says what is missing.
    void accept() override;

  private:
    void build();
    QString problem(NetworkProfile& profile) const;
    void save(const NetworkProfile& profile);

    SettingsStore& store_;
    NetworkProfile& profile_;
    std::string profileFile_;
    QLineEdit* nick_;
    QLineEdit* path_;
    QLineEdit* server_;
    QLineEdit* port_;
    QLabel* problem_;
};

}  // namespace talvora
