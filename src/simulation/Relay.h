#pragma once
// One server for several clients: what one of them says reaches the others as a server passes it on. It knows
// nicks and who is in which channel, and as much of the protocol as a conversation needs.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "simulation/World.h"

namespace talvora::test {

class Relay {
  public:
    // The client's server is this one from now on.
    void serve(Client& client) { serve(client.server); }
    void serve(ScriptedServer& server);

    // Asked of each text to one user, as it would be passed on; one for which it says true never arrives.
    std::function<bool(const std::string& line)> loses;

  private:
    // One client's connection; without a nick it is not logged on.
    struct Link {
        explicit Link(ScriptedServer& theServer) : server(theServer) {}
        ScriptedServer& server;
        std::string nick;
        bool welcome = false;
    };

    void hear(Link& from, const std::string& line);
    void logOn(Link& from);
    void quit(Link& from, const std::string& line);
    void join(Link& from, const std::string& channel);
    void part(Link& from, const std::string& channel);
    void rename(Link& from, const std::string& nick);
    void names(Link& to, const std::string& channel);
    void who(Link& to);
    void text(Link& from, const std::string& target, const std::string& line);
    // To everybody who shares a channel with `from`, and not to `from` itself.
    void toMates(const Link& from, const std::string& line);
    static std::string prefixOf(const Link& link) { return ":" + link.nick + "!u@h "; }

    std::vector<std::shared_ptr<Link>> links_;
    std::map<std::string, std::vector<Link*>> channels_;  // by their names in lower case
};

}  // namespace talvora::test
