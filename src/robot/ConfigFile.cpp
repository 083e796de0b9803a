#include "robot/ConfigFile.h"

#include <filesystem>
#include <fstream>

#include "gate/Places.h"
#include "platform/CodePage1253.h"

namespace talvora {
namespace {

namespace fs = std::filesystem;

// A longer one is refused by its reader.
constexpr std::size_t LongestFile = std::size_t{64} << 10;

std::string count(int number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::string limit(int number, const std::string& what) {
    return number == 0 ? "any number of " + what + "s" : "at most " + count(number, what);
}

// The texts of the store's settings are native already.
std::string describeStore(const StoreSettings& store) {
    if (store.Driver == "QSQLITE")
        return "the file " + fs::absolute(store.Database).lexically_normal().string();
    return "the database " + store.Database + " of PostgreSQL" +
           (store.Host.empty() ? "" : " at " + store.Host);
}

std::string describeAddresses(const RobotConfig& config) {
    const std::string told = config.AddressHost.empty() ? "told that there is no address server"
                                                        : "sent to " + toUtf8(config.AddressHost);
    std::string text = "Who asks for its address is " + told + ".\n";
    if (config.AddressPort == 0) return text + "No address server is in this program.\n";
    const std::string where = config.AddressListen.empty() ? "all addresses" : config.AddressListen;
    return text + "An address server listens on port " + std::to_string(config.AddressPort) + " of " + where +
           ".\n";
}

}  // namespace

std::string ChooseConfigFile(const std::string& given) {
    if (!given.empty()) return given;
    const std::string own = (fs::path(defaultConfigFolder()) / "orreryserv.ini").string();
    const std::string common = "/etc/talvora/orreryserv.ini";
    std::error_code ignored;
    for (const std::string& file : {own, common}) {
        if (fs::exists(file, ignored)) return file;
    }
    throw ProfileError(own, 1, "neither this file is there nor " + common);
}

RobotConfig ReadConfigFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text(LongestFile + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    std::error_code ignored;
    if (!stream.is_open() || stream.bad() || fs::is_directory(file, ignored)) {
        throw ProfileError(file, 1, "this file cannot be read; it must be the robot's configuration");
    }
    return parseRobotConfig(text, file);
}

std::string DescribeConfig(const RobotConfig& config) {
    const NetworkProfile& network = config.Network;
    return toUtf8(config.Nick) + " logs on to " + toUtf8(network.ServerHost) + ":" +
           std::to_string(network.ServerPort) + (network.TLS ? " by TLS" : "") + " and joins " +
           toUtf8(network.SysChannel) + ".\n" +  //
           "Mail and announcements are kept in " + describeStore(config.Store) + ".\n" +
           "For a user wait at most " + count(config.MailsPerUser, "mail") + " and " +
           count(config.KilobytesPerUser, "kilobyte") + "; a mail has at most " +
           count(config.PiecesPerMail, "piece") + ".\n" +  //
           "It sends " + limit(config.LinesPerSecond, "line") + " a second, and answers " +
           limit(config.RequestsPerMinute, "request") + " of a user a minute.\n" + describeAddresses(config);
}

}  // namespace talvora
