#include "simulation/programs/Gate.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace talvora::programs {

namespace {

QJsonObject read(const std::string& line) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(line), &error);
    if (!document.isObject())
        throw Missing("no object in the gate's line " + line + ": " + error.errorString().toStdString());
    return document.object();
}

std::string written(const QJsonValue& value) {
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
}

}  // namespace

QJsonValue GateReader::expectMessage(int id, const Wanted& wanted, const std::string& what) {
    const auto matches = [&](const std::string& line) {
        // Many lines wait in a long session; only those that can be meant are read.
        if (line.find(std::to_string(id)) == std::string::npos) return false;
        const QJsonObject message = read(line);
        return message["MsgID"] == id && wanted(message["Data"]);
    };
    return read(lines_.take(matches, "host message " + std::to_string(id) + " with " + what))["Data"];
}

void GateReader::expectMessage(int id, const QJsonValue& data) {
    expectMessage(
        id, [&](const QJsonValue& found) { return found == data; }, written(data));
}

void GateReader::expectNotice(int kind, const std::string& window, const std::string& text) {
    expectMessage(HostMsg::Notice, QJsonArray{"Chat", QString::fromStdString(text), kind,
                                              QString::fromStdString(window), "", "imgChat", false, false});
}

QJsonValue GateReader::expectNumeric(int number, std::initializer_list<std::string_view> words) {
    std::string what = "numeric " + std::to_string(number);
    for (const std::string_view word : words) what.append(" ").append(word);
    const auto wanted = [&](const QJsonValue& data) {
        if (data[0].toInt() != number) return false;
        int index = 1;
        for (const std::string_view word : words) {
            if (textOf(data[1][index++]) != word) return false;
        }
        return true;
    };
    return expectMessage(HostMsg::ServerNumeric, wanted, what);
}

void GateReader::send(int id, const QJsonValue& data) {
    const QJsonDocument message(QJsonObject{{"MsgID", id}, {"Data", data}});
    sendLine(message.toJson(QJsonDocument::Compact).toStdString());
}

std::string GateReader::takeLine(const std::string& part) {
    return lines_.take([&](const std::string& line) { return line.find(part) != line.npos; },
                       "a line of the gate with " + part);
}

}  // namespace talvora::programs
