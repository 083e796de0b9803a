#pragma once
// The settings window: pages of the host and of its plug-ins, saved and applied together. Owned by the face,
// which destroys it after it is closed.

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QStackedWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "desktop/HostFace.h"

namespace talvora {

class SettingsWindow final : public QWidget {
  public:
    struct Page {
        QString Title;
        QIcon Icon;
        std::unique_ptr<SettingsPage> Body;
    };
    struct Orders {
        std::function<void()> Apply;  // tells all plug-ins that the settings are saved
        std::function<void()> Closed;
    };

    SettingsWindow(std::vector<Page> pages, Orders orders);
    ~SettingsWindow() override;

    // Saves and applies. False, with the reason shown, if a page has a problem or cannot be saved.
    bool Save();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void build();
    void addPage(const Page& page);
    bool pagesSaved();
    void edited();
    void showProblem(const QString& problem);

    std::vector<Page> pages_;
    Subscriptions on_;
    Orders orders_;
    QListWidget* list_;
    QStackedWidget* stack_;
    QLabel* problem_;
    QDialogButtonBox* buttons_;
    bool saving_ = false;
};

}  // namespace talvora
