#include "settings/StateRows.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view LineEnd = "\r\n";
// What a tag can hold is what a nick can hold, without the brackets around it.
constexpr std::string_view NotInTags = " ,:!@*?#[]";

// A row in the page's form, or one without a tag.
StateRow rowOf(const std::string& line) {
    const auto fields = Split(line, "|");
    if (fields.size() != 3) return {};
    const std::string icon = Trim(fields[2]);
    if (icon.size() != 1 || icon[0] < '1' || icon[0] > '0' + StateRows::Icons) return {};
    return {Trim(fields[0]), fields[1], icon[0] - '0'};
}

std::string lineOf(const StateRow& row) {
    return row.Tag + "|" + row.Description + "|" + CStr(row.Icon);
}

std::string asField(const std::string& text) {
    return Replace(OneLine(text), "|", "");
}

}  // namespace

StateRows::StateRows(Platform& platform, GlobError& globError)
    : platform_(platform), file_(platform.ProgramFiles, R"(System\perflix.lst)") {
    trapped(globError, "LoadStates", [&](Trap& step) {
        step([&] {
            for (const std::string& line : file_.Read()) readLine(line);
        });
    });
    saved_ = text();
}

void StateRows::readLine(const std::string& line) {
    StateRow row = rowOf(line);
    if (row.Tag.empty()) {
        behind_.append(line).append(LineEnd);
    } else {
        rows_.push_back({std::exchange(behind_, {}), line, std::move(row)});
    }
}

StateRows::Entry& StateRows::entry(std::size_t index) {
    if (index >= rows_.size()) throw RuntimeError(Fault::SubscriptOutOfRange);
    return rows_[index];
}

bool StateRows::Add() {
    if (rows_.size() >= MostStates) {
        MessageBox box;
        box.Text = "You cannot add more than 50 different user states!";
        box.Title = "Talvora";
        box.Icon = MessageIcon::Exclamation;
        platform_.Asking.Ask(box);
        return false;
    }
    const StateRow row{"NEW", "(Change)", 2};
    rows_.push_back({std::exchange(behind_, {}), lineOf(row), row});
    Changed.raise();
    return true;
}

void StateRows::Remove(std::size_t index) {
    std::string kept = std::move(entry(index).Before);
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index));
    (index < rows_.size() ? rows_[index].Before : behind_).insert(0, kept);
    Changed.raise();
}

void StateRows::Change(std::size_t index, StateRow row) {
    Entry& changed = entry(index);
    row.Tag = Trim(asField(row.Tag));
    row.Description = asField(row.Description);
    row.Icon = std::clamp(row.Icon, 1, Icons);
    if (row == changed.Row) return;
    changed.Text = lineOf(row);
    changed.Row = std::move(row);
    changed.Edited = true;
    Changed.raise();
}

void StateRows::Swap(std::size_t index, std::size_t other) {
    Entry& first = entry(index);
    Entry& second = entry(other);
    if (index == other) return;
    std::swap(first, second);
    std::swap(first.Before, second.Before);
    Changed.raise();
}

std::string StateRows::Problem() const {
    for (const auto& row : rows_) {
        if (!row.Edited) continue;
        if (row.Row.Tag.empty()) return "A state has no tag.";
        if (row.Row.Tag.find_first_of(NotInTags) != std::string::npos) {
            return "The tag " + row.Row.Tag + " of a state cannot stand in a nick.";
        }
    }
    return {};
}

std::string StateRows::text() const {
    std::string all;
    for (const auto& row : rows_) all.append(row.Before).append(row.Text).append(LineEnd);
    return all + behind_;
}

void StateRows::Save(Trap& step) {
    std::string now = text();
    if (now != saved_ && step([&] { file_.Write(now); })) saved_ = std::move(now);
}

}  // namespace talvora
