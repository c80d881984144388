#include "locations/ov_storage.hpp"

#include "platform/files.hpp"
#include "platform/standard_directories.hpp"

namespace lunoval {

namespace fs = std::filesystem;

OVStorage& OVStorage::localStorage() {
    static OVStorage shared(localStoragePath(), legacyStoragePath());
    return shared;
}

fs::path OVStorage::localStoragePath() {
    const auto folder = applicationSupportDirectory();
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    return folder / kFileName;
}

fs::path OVStorage::legacyStoragePath() {
    return homeDirectory() / kFileName;
}

// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): the store and the legacy file it replaces
OVStorage::OVStorage(fs::path localPath, const fs::path& legacyPath)
    : localPath_(std::move(localPath)) {
    if (auto local = readDictionaryFile(localPath_).dictionary) {
        localStore_.update(*local);
        return;
    }
    if (auto legacy = readDictionaryFile(legacyPath).dictionary) {
        localStore_.update(*legacy);
        synchronize();
    }
}

void OVStorage::setObject(PropertyValue value, std::string_view key) {
    localStore_[std::string(key)] = std::move(value);
}

std::optional<PropertyValue> OVStorage::objectForKey(std::string_view key) const {
    const auto item = localStore_.find(std::string(key));
    if (item == localStore_.end()) return std::nullopt;
    return *item;
}

void OVStorage::removeObject(std::string_view key) {
    localStore_.erase(std::string(key));
}

std::optional<std::string> OVStorage::synchronize() {
    if (readDictionaryFile(localPath_).corrupt) keepCorruptFileAside(localPath_);
    try {
        writeFileAtomically(localPath_, propertyListXml(localStore_));
        return std::nullopt;
    } catch (const std::system_error& failure) {
        // The values stay in memory for this run.
        return failure.what();
    }
}

}  // namespace lunoval
