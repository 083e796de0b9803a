#pragma once
// A connection to a host's gate, and what its lines say. Data are as JSON has them; texts in UTF-8.

#include <QtCore/QJsonArray>
#include <QtCore/QJsonValue>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "common/HostMessageNumbers.h"
#include "simulation/programs/LineSocket.h"

namespace talvora::programs {

// How a line of the gate with this message begins.
inline std::string hostMessage(std::int32_t number) {
    return "\"MsgID\":" + std::to_string(number) + ",";
}

// What is not there or no text is "".
inline std::string textOf(const QJsonValue& value) {
    return value.toString().toStdString();
}

class GateReader {
  public:
    using Wanted = std::function<bool(const QJsonValue& data)>;

    explicit GateReader(const std::string& path) : lines_(path) {}

    // The first waiting message of this number with such data, or the next that comes. Returns its data.
    QJsonValue expectMessage(int id, const Wanted& wanted, const std::string& what);
    // The same, by what the message carries.
    void expectMessage(int id, const QJsonValue& data);
    // A notice of a chat window: kind 1 for a private text, 2 for a channel's.
    void expectNotice(int kind, const std::string& window, const std::string& text);
    // A line of the server with this number; the words are its parameters behind the own nick.
    QJsonValue expectNumeric(int number, std::initializer_list<std::string_view> words = {});

    void send(int id, const QJsonValue& data);
    void sendLine(std::string_view line) { lines_.send(line); }
    std::string takeLine(const std::string& part);
    bool saw(std::string_view part) const { return lines_.transcript.find(part) != std::string::npos; }
    const std::string& transcript() const { return lines_.transcript; }

  private:
    LineSocket lines_;
};

}  // namespace talvora::programs
