#pragma once
// How far a transfer is: the file, what is done now, bars of the file and of the list, speed and time left.
// The windows of both sides have one. It is drawn at most thirty times a second, however many blocks or files
// pass, and shows the same at the program's entry in the task bar while it is visible.

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "desktop/HostFace.h"
#include "platform/Controls.h"
#include "transfer/TransferMeter.h"

class QGridLayout;
class QLabel;
class QProgressBar;

namespace talvora {

// The models of a form; they outlive the panel.
struct TransferShown {
    const Form& TheForm;
    Label& FileName;
    Label& Action;
    Label& Speed;
    TransferMeter& Meter;
};

class TransferPanel final : public QWidget {
  public:
    TransferPanel(const TransferShown& shown, HostFace& face, QWidget* parent);
    ~TransferPanel() override;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QLabel* addWords(QGridLayout& rows, const QString& name);
    QProgressBar* addBar(QGridLayout& rows, const QString& name);
    void followAll();
    void drawSoon();
    void draw();
    void drawBars();

    TransferShown shown_;
    HostFace& face_;
    QLabel* fileName_ = nullptr;
    QLabel* action_ = nullptr;
    QProgressBar* file_ = nullptr;
    QProgressBar* list_ = nullptr;
    QLabel* listName_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* speed_ = nullptr;
    QTimer later_;
    QElapsedTimer drawn_;
    Subscriptions on_;
};

}  // namespace talvora
