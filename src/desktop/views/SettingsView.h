#pragma once
// The component's page of the host's settings window.

#include <QPointer>
#include <memory>

#include "desktop/HostFace.h"
#include "settings/Settings.h"

class QFormLayout;
class QTabWidget;

namespace talvora {

class SettingsView final : public SettingsPage {
  public:
    explicit SettingsView(std::unique_ptr<Settings> model);
    ~SettingsView() override;

    QWidget& Widget() override;
    QString Problem() const override;
    void Save() override { model_->SaveAll(); }
    void Applied() override { model_->Applied(); }

  private:
    // A tab, and in it a group of controls that belong together.
    QWidget* addTab(const QString& name);
    QFormLayout* addGroup(QWidget* tab, const QString& name);
    void addText(QFormLayout* group, Label& caption, TextBox& box, bool secret = false);
    void addChoice(QFormLayout* group, Label& caption, ComboBox& box);
    void addFlags(QFormLayout* group, std::initializer_list<CheckBox*> boxes);

    void addYou();
    void addConnection();
    void addNotices();
    void addMail();
    void addTables();

    std::unique_ptr<Settings> model_;
    QPointer<QTabWidget> widget_;  // the settings window may have taken it
    Subscriptions on_;
};

}  // namespace talvora
