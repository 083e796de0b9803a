#include "platform/SettingsTable.h"

#include "platform/Text.h"

namespace talvora {

std::string SettingsTable::folded(std::string_view name) {
    return UCase(name);
}

SettingsTable::Address::Address(const SettingName& name)
    : names(folded(name.app) + folded(name.section) + folded(name.key)),
      appSize(name.app.size()),
      sectionSize(name.section.size()) {}

SettingName SettingsTable::namesOf(const Address& address) {
    const std::string_view names = address.names;
    return {names.substr(0, address.appSize), names.substr(address.appSize, address.sectionSize),
            names.substr(address.appSize + address.sectionSize)};
}

std::size_t SettingsTable::Hash::operator()(const SettingName& name) const {
    constexpr std::size_t mix = 0x9E3779B97F4A7C15;
    // Application and section are nearly the same for all, and their lengths tell them apart: the key has to
    // spread.
    return (name.app.size() * mix + name.section.size()) * mix + TextHash()(name.key);
}

bool SettingsTable::Equal::operator()(const SettingName& a, const SettingName& b) const {
    return EqualText(a.key, b.key) && EqualText(a.section, b.section) && EqualText(a.app, b.app);
}

const std::string* SettingsTable::find(const SettingName& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? nullptr : &found->second;
}

void SettingsTable::save(const SettingName& name, std::string_view value) {
    const auto found = values_.find(name);
    if (found != values_.end()) {
        found->second = value;
    } else {
        values_.emplace(Address(name), value);
    }
}

}  // namespace talvora
