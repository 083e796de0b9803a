#pragma once
// The host's own page of the settings window: the network profile, which can be tried before it is saved.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <memory>
#include <string>

#include "desktop/HostFace.h"
#include "orrery/face/ConnectionTest.h"
#include "profile/NetworkProfile.h"

class QFormLayout;

namespace talvora {

class NetworkPage final : public SettingsPage {
  public:
    // `profile` is changed in place by Save, `file` is where it is kept.
    NetworkPage(NetworkProfile& profile, std::string file);
    ~NetworkPage() override;

    QWidget& Widget() override { return *widget_; }
    QString Problem() const override;
    void Save() override;
    void Applied() override {}

    // What stands on the page, as far as it is right; the first thing that is not, in words.
    NetworkProfile Read(QString& problem) const;

  private:
    void build();
    QWidget* chooserOfFile();
    QWidget* tester();
    void edited();
    void test();
    void tested(const QString& words);

    NetworkProfile& profile_;
    NetworkProfile shown_;  // as the page was filled, or saved last
    std::string file_;
    std::unique_ptr<QWidget> widget_;
    QLineEdit* server_;
    QLineEdit* port_;
    QCheckBox* tls_;
    QLineEdit* caFile_;
    QComboBox* encoding_;
    QLineEdit* dialect_;
    QLineEdit* channel_;
    QLineEdit* key_;
    QPushButton* test_;
    QLabel* result_;
    std::unique_ptr<ConnectionTest> running_;
};

}  // namespace talvora
