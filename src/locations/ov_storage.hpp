#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_value.hpp"

namespace lunoval {

// A small private key/value store: one property-list dictionary file in the program's own
// data folder, loaded once, written only on `synchronize`. Meant for the main thread.
class OVStorage {
  public:
    static constexpr std::string_view kFileName = "a77cc25f49e447e0ad67b8a8fd4ad381";

    // The process's store, made on first use.
    static OVStorage& localStorage();
    // In the application-support folder, which is made if missing.
    static std::filesystem::path localStoragePath();
    // Where an older version kept the store: the home folder.
    static std::filesystem::path legacyStoragePath();

    // Reads the local file; without one, takes over the legacy file's entries and writes them
    // to the local path at once.
    OVStorage(std::filesystem::path localPath, const std::filesystem::path& legacyPath);

    void setObject(PropertyValue value, std::string_view key);
    [[nodiscard]] std::optional<PropertyValue> objectForKey(std::string_view key) const;
    void removeObject(std::string_view key);
    [[nodiscard]] const PropertyValue& entries() const { return localStore_; }
    // Writes the whole store atomically. A local file that did not read as a dictionary is kept
    // aside first. The store reports no failure itself; the reason a write failed is returned for
    // a command whose user asked for it.
    std::optional<std::string> synchronize();

  private:
    std::filesystem::path localPath_;
    PropertyValue localStore_ = PropertyValue::object();
};

}  // namespace lunoval
