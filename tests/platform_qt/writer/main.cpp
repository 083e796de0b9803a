// Saves settings until it is killed, and says on standard output which save has returned:
//     settings_writer FILE ROUND

#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <exception>
#include <iostream>
#include <string>

#include "platform_qt/SqliteSettings.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 3) return 2;
    try {
        talvora::SqliteSettings settings(argv[1]);
        if (!settings.Notice().empty()) std::cerr << settings.Notice() << std::endl;
        for (int save = 0;; ++save) {
            const std::string key = std::to_string(save % 7);
            const std::string value = std::string(argv[2]) + "." + std::to_string(save);
            settings.SaveSetting("Talvora", "Incompleted", key, value);
            const std::string line = key + " " + value + "\n";
            if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) return 1;
        }
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << std::endl;
        return 1;
    }
}
