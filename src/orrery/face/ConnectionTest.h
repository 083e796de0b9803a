#pragma once
// Tries a network profile: connects, says hello as a guest, waits for the first sign of an IRC server and
// takes its leave. Says in plain words what is wrong. Never blocks; what it reads is bounded. Owned by who
// waits for it; destroying it ends the test without a word.

#include <QByteArray>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>
#include <functional>
#include <memory>

#include "profile/NetworkProfile.h"

namespace talvora {

class ConnectionTest {
  public:
    static constexpr int Patience = 10'000;  // milliseconds
    using Done = std::function<void(bool works, const QString& words)>;

    // `done` is called once, from the loop; it may destroy the test.
    ConnectionTest(const NetworkProfile& profile, Done done, int patience = Patience);
    ~ConnectionTest();
    ConnectionTest(const ConnectionTest&) = delete;
    ConnectionTest& operator=(const ConnectionTest&) = delete;

  private:
    void start();
    bool secure();
    void stands();
    void received();
    void line(const QByteArray& line);
    void heardNumeric(int number, const QString& server);
    void failed(QAbstractSocket::SocketError error);
    void tooLate();
    void finish(bool works, const QString& words);

    QString certificateWords() const;
    QString closedWords() const;
    QString handshakeWords() const;

    NetworkProfile profile_;
    QString host_;
    Done done_;
    QObject context_;
    QTimer deadline_;
    QSslSocket socket_;
    QList<QSslError> doubts_;  // about the certificate
    QByteArray received_;
    qsizetype total_ = 0;
    bool connected_ = false;  // the server has taken the connection
    bool spoke_ = false;      // it has said something that belongs to IRC
};

}  // namespace talvora
