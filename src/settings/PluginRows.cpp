#include "settings/PluginRows.h"

#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr int Fields = 6;
constexpr std::size_t PrivateField = 1;
constexpr std::size_t ChannelField = 2;

}  // namespace

PluginRows::PluginRows(Platform& platform, GlobError& globError)
    : file_(platform.ProgramFiles, R"(System\plugin.lst)") {
    trapped(globError, "LoadPlugins", [&](Trap& step) {
        step([&] {
            for (const std::string& line : file_.Read()) readLine(line);
        });
    });
    saved_ = text();
}

void PluginRows::readLine(const std::string& line) {
    if (line.empty()) return;
    lines_.push_back(line);
    const auto fields = Split(line, " ", Fields);
    if (fields.size() != Fields) return;
    const PluginRow row{fields[0], fields[5], fields[PrivateField] == "T", fields[ChannelField] == "T"};
    rows_.push_back({lines_.size() - 1, row});
}

const PluginRow& PluginRows::Row(std::size_t index) const {
    return elementOf(rows_, index).Row;
}

void PluginRows::SetInPrivates(std::size_t index, bool in) {
    set(index, &PluginRow::InPrivates, PrivateField, in);
}

void PluginRows::SetInChannels(std::size_t index, bool in) {
    set(index, &PluginRow::InChannels, ChannelField, in);
}

void PluginRows::set(std::size_t index, bool PluginRow::*flag, std::size_t field, bool in) {
    if (Row(index).*flag == in) return;
    Entry& entry = rows_[index];
    entry.Row.*flag = in;
    auto fields = Split(lines_[entry.Line], " ", Fields);
    fields[field] = in ? "T" : "F";
    lines_[entry.Line] = Join(fields, " ");
    Changed.raise();
}

std::string PluginRows::text() const {
    std::string all;
    for (const std::string& line : lines_) all.append(line).append("\r\n");
    return all;
}

void PluginRows::Save(Trap& step) {
    std::string now = text();
    if (now != saved_ && step([&] { file_.Write(now); })) saved_ = std::move(now);
}

}  // namespace talvora
