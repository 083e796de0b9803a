#include "e2e/support/ServerConfig.h"

namespace talvora::e2e {

namespace {

void replaceAll(std::string& text, std::string_view what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
}

std::string filled(std::string text, const ServerConfig& config, const std::string& password) {
    replaceAll(text, "@PORT@", std::to_string(config.port));
    replaceAll(text, "@FOLDER@", config.folder);
    replaceAll(text, "@NICKLENGTH@", std::to_string(config.options.nickLength));
    replaceAll(text, "@PASSWORD@", config.options.password.empty() ? "" : password);
    return text;
}

constexpr const char* ngircd = R"([Global]
Name = irc.talvora.test
Info = Talvora test network
AdminInfo1 = test
AdminEMail = root@localhost
Listen = 127.0.0.1
Ports = @PORT@
MotdPhrase = Welcome.
@PASSWORD@
[Limits]
MaxNickLength = @NICKLENGTH@
MaxPenaltyTime = 0
MaxConnectionsIP = 0
MaxJoins = 0
MaxListSize = 0
PingTimeout = 120
PongTimeout = 20
[Options]
DNS = no
Ident = no
PAM = no
)";

constexpr const char* inspircd = R"(<config format="xml">
<server name="irc.talvora.test" description="Talvora test network" network="Talvora" id="0TT">
<admin name="test" nick="test" email="root@localhost">
<bind address="127.0.0.1" port="@PORT@" type="clients">
<connect name="main" allow="*" @PASSWORD@ timeout="10" pingfreq="120" hardsendq="16777216"
    softsendq="16777216" recvq="1048576" threshold="1000" commandrate="1000000" fakelag="no" localmax="200"
    globalmax="200" maxchans="100" resolvehostnames="no" useconnectban="no" useident="no">
<limits maxnick="@NICKLENGTH@" maxchan="64" maxmodes="20" maxident="11" maxquit="255" maxtopic="307"
    maxkick="255" maxreal="128" maxaway="200">
<options prefixquit="Quit: " defaultmodes="o">
<performance softlimit="200" somaxconn="128">
<path configdir="@FOLDER@" datadir="@FOLDER@" logdir="@FOLDER@" moduledir="@MODULES@">
<files motd="@FOLDER@/motd">
<dns server="127.0.0.1" timeout="1">
<log method="file" type="* -USERINPUT -USEROUTPUT" level="default" target="@FOLDER@/log">
)";

constexpr const char* hybrid = R"(serverinfo {
    name = "irc.talvora.test"; description = "Talvora test network";
    network_name = "talvora"; network_description = "Talvora";
    default_max_clients = 100; max_nick_length = @NICKLENGTH@; max_topic_length = 300;
};
admin { name = "test"; description = "test"; email = "root@localhost"; };
class {
    name = "users"; ping_time = 120 seconds; number_per_ip_local = 100; number_per_ip_global = 100;
    max_number = 100; sendq = 16 megabytes; recvq = 8000 bytes; max_channels = 60;
};
motd { mask = "*"; file = "@FOLDER@/motd"; };
listen { host = "127.0.0.1"; port = @PORT@; };
auth {
    user = "*@*"; class = "users"; @PASSWORD@
    flags = need_password, exceed_limit, can_flood, kline_exempt, xline_exempt, resv_exempt;
};
general {
    disable_auth = yes; default_floodcount = 0; throttle_count = 1000; anti_nick_flood = no; away_count = 0;
    anti_spam_exit_message_time = 0; pace_wait_simple = 0; pace_wait = 0; max_targets = 20;
    min_nonwildcard = 1; invisible_on_connect = @INVISIBLE@;
};
channel { default_join_flood_count = 0; max_channels = 60; };
)";

}  // namespace

std::string ngircdConfig(const ServerConfig& config) {
    return filled(ngircd, config, "Password = " + config.options.password);
}

std::string inspircdConfig(const ServerConfig& config) {
    std::string text = filled(inspircd, config, "password=\"" + config.options.password + "\"");
    replaceAll(text, "@MODULES@", "/usr/lib/inspircd/modules");
    return text;
}

std::string hybridConfig(const ServerConfig& config) {
    std::string text = filled(hybrid, config, "password = \"" + config.options.password + "\";");
    replaceAll(text, "need_password, ", config.options.password.empty() ? "" : "need_password, ");
    replaceAll(text, "@INVISIBLE@", config.options.invisible ? "yes" : "no");
    return text;
}

}  // namespace talvora::e2e
