#pragma once
// The settings in memory: application, section and key to a value, names without regard to case (Greek too),
// any bytes in names and values. A settings store owns it; what it holds is not written anywhere by itself. A
// look-up costs one hash and allocates nothing.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace talvora {

// The address of a setting. The views belong to the caller.
struct SettingName {
    std::string_view app;
    std::string_view section;
    std::string_view key;
};

class SettingsTable {
  public:
    // Null if there is no such setting; valid until the next `save`.
    const std::string* find(const SettingName& name) const;
    void save(const SettingName& name, std::string_view value);
    std::size_t size() const { return values_.size(); }

    // A name as it compares, for stores that compare bytes.
    static std::string folded(std::string_view name);

  private:
    // The three names folded, one behind the other.
    struct Address {
        explicit Address(const SettingName& name);

        std::string names;
        std::size_t appSize;
        std::size_t sectionSize;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const SettingName& name) const;
        std::size_t operator()(const Address& address) const { return (*this)(namesOf(address)); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const SettingName& a, const SettingName& b) const;
        bool operator()(const SettingName& a, const Address& b) const { return (*this)(a, namesOf(b)); }
        bool operator()(const Address& a, const SettingName& b) const { return (*this)(namesOf(a), b); }
        bool operator()(const Address& a, const Address& b) const { return (*this)(namesOf(a), namesOf(b)); }
    };
    static SettingName namesOf(const Address& address);

    std::unordered_map<Address, std::string, Hash, Equal> values_;
};

}  // namespace talvora
