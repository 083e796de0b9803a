// file_client FOLDER NICK PROFILE: a client that stays until its standard input ends or it is told to go.

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdio>
#include <string>

#include "orrery/Environment.h"
#include "orrery/ProfileFile.h"
#include "orrery/Program.h"
#include "simulation/files/FileClient.h"

int main(int argc, char** argv) {
    using namespace talvora;
    if (argc != 4) return complain("file_client FOLDER NICK PROFILE", ExitStatus::WrongUsage);
    prepareEnvironment();
    const QCoreApplication application(argc, argv);
    settleLocale();
    FileClient client(argv[1], argv[2], readProfile(argv[3], true));
    client.Start();
    std::string unread;
    QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&orders, &QSocketNotifier::activated, &orders, [&] {
        char chunk[65536];
        const ssize_t size = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (size <= 0) return QCoreApplication::exit();
        unread.append(chunk, static_cast<std::size_t>(size));
        for (std::size_t end; (end = unread.find('\n')) != std::string::npos; unread.erase(0, end + 1))
            client.Obey(unread.substr(0, end));
    });
    return QCoreApplication::exec();
}
