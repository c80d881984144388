#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/plist_handles.hpp"
#include "platform/property_value.hpp"

namespace lunoval {

// The app group's shared defaults: one property-list file per suite, shared by the widget
// process and the host-app commands. Every read sees the file as it is now; every write is a
// read-modify-write under an advisory lock, replacing the file atomically, so no process loses
// another's keys and no reader meets a half-written file. A file that does not parse reads as
// empty and is kept aside (renamed with a ".corrupt-<time>" suffix) before the next write.
class UserDefaults {
  public:
    explicit UserDefaults(std::filesystem::path file) : file_(std::move(file)) {}

    // `$XDG_CONFIG_HOME/lunoval/<suite>.plist`, the config folder defaulting to ~/.config.
    static UserDefaults suite(std::string_view name);

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

    // Integers read as doubles too, as numbers do on the phone.
    [[nodiscard]] std::optional<double> doubleForKey(std::string_view key) const;
    [[nodiscard]] std::optional<std::int64_t> integerForKey(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> dataForKey(std::string_view key) const;
    [[nodiscard]] std::optional<PropertyValue> objectForKey(std::string_view key) const;
    // Every key at one moment: values read together come from the same write.
    [[nodiscard]] PropertyValue dictionaryRepresentation() const;
    // The file is there but is not a property-list dictionary.
    [[nodiscard]] bool isCorrupt() const;

    void setDouble(std::string_view key, double value) const;
    void setInteger(std::string_view key, std::int64_t value) const;
    void setString(std::string_view key, std::string_view value) const;
    void setData(std::string_view key, std::string_view bytes) const;
    void removeObject(std::string_view key) const;
    // Sets every key of a dictionary in one write (a null value removes its key).
    void setObjects(const PropertyValue& entries) const;

  private:
    // Runs `read` on a copy of the key's value (null when absent).
    template <typename T>
    std::optional<T> read(std::string_view key,
                          const std::function<std::optional<T>(plist_t)>& convert) const;
    void write(std::string_view key, plist_t value) const;
    void write(std::vector<std::pair<std::string, plist::Node>> entries) const;

    std::filesystem::path file_;
};

}  // namespace lunoval
