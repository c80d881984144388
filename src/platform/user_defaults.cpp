#include "platform/user_defaults.hpp"

#include <cstdlib>
#include <limits>

#include "platform/files.hpp"
#include "platform/property_value.hpp"

namespace lunoval {

namespace fs = std::filesystem;

namespace {

// The file's root dictionary, or null when it is missing or does not parse as one.
plist::Node loadDictionary(const fs::path& file, bool* corrupt = nullptr) {
    const auto bytes = readWholeFile(file);
    if (!bytes || bytes->empty() || bytes->size() > std::numeric_limits<uint32_t>::max()) {
        return nullptr;
    }
    plist_t raw = nullptr;
    plist_from_memory(bytes->data(), static_cast<uint32_t>(bytes->size()), &raw);
    plist::Node root(raw);
    if (root && plist_get_node_type(root.get()) == PLIST_DICT) return root;
    if (corrupt != nullptr) *corrupt = true;
    return nullptr;
}

std::string serialized(plist_t root) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &xml, &length);
    const plist::CString owned(xml);
    return owned ? std::string(owned.get(), length) : std::string{};
}

std::optional<std::string> bytesOf(plist_t node, plist_type type) {
    if (plist_get_node_type(node) != type) return std::nullopt;
    if (type == PLIST_STRING) return plist::stringOf(node);
    uint64_t length = 0;
    const char* bytes = plist_get_data_ptr(node, &length);
    return bytes != nullptr ? std::string(bytes, length) : std::string{};
}

}  // namespace

UserDefaults UserDefaults::suite(std::string_view name) {
    fs::path config;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg != nullptr && *xdg == '/') {
        config = xdg;
    } else if (const char* home = std::getenv("HOME"); home != nullptr) {
        config = fs::path(home) / ".config";
    }
    return UserDefaults(config / "lunoval" / (std::string(name) + ".plist"));
}

template <typename T>
std::optional<T> UserDefaults::read(std::string_view key,
                                    const std::function<std::optional<T>(plist_t)>& convert) const {
    plist::Node root;
    {
        const FileLock lock(file_, FileLock::Mode::shared);
        root = loadDictionary(file_);
    }
    if (!root) return std::nullopt;
    plist_t value = plist_dict_get_item(root.get(), std::string(key).c_str());
    return value != nullptr ? convert(value) : std::nullopt;
}

void UserDefaults::write(std::string_view key, plist_t value) const {
    std::vector<std::pair<std::string, plist::Node>> entries;
    entries.emplace_back(key, plist::Node(value));
    write(std::move(entries));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the nodes are released into the file.
void UserDefaults::write(std::vector<std::pair<std::string, plist::Node>> entries) const {
    std::error_code ignored;
    fs::create_directories(file_.parent_path(), ignored);
    const FileLock lock(file_, FileLock::Mode::exclusive);
    bool corrupt = false;
    plist::Node root = loadDictionary(file_, &corrupt);
    if (corrupt) keepCorruptFileAside(file_);
    if (!root) root.reset(plist_new_dict());
    for (auto& [key, value] : entries) {
        if (value) {
            plist_dict_set_item(root.get(), key.c_str(), value.release());
        } else {
            plist_dict_remove_item(root.get(), key.c_str());
        }
    }
    writeFileAtomically(file_, serialized(root.get()));
}

bool UserDefaults::isCorrupt() const {
    const FileLock lock(file_, FileLock::Mode::shared);
    bool corrupt = false;
    loadDictionary(file_, &corrupt);
    return corrupt;
}

std::optional<PropertyValue> UserDefaults::objectForKey(std::string_view key) const {
    return read<PropertyValue>(
        key, [](plist_t node) -> std::optional<PropertyValue> { return propertyValue(node); });
}

PropertyValue UserDefaults::dictionaryRepresentation() const {
    plist::Node root;
    {
        const FileLock lock(file_, FileLock::Mode::shared);
        root = loadDictionary(file_);
    }
    return root ? propertyValue(root.get()) : PropertyValue::object();
}

void UserDefaults::setObjects(const PropertyValue& entries) const {
    std::vector<std::pair<std::string, plist::Node>> nodes;
    for (const auto& [key, value] : entries.items()) nodes.emplace_back(key, propertyNode(value));
    write(std::move(nodes));
}

std::optional<double> UserDefaults::doubleForKey(std::string_view key) const {
    return read<double>(key, [](plist_t node) -> std::optional<double> {
        if (plist_get_node_type(node) == PLIST_REAL) {
            double value = 0;
            plist_get_real_val(node, &value);
            return value;
        }
        if (plist_get_node_type(node) == PLIST_UINT) {
            uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return static_cast<double>(static_cast<std::int64_t>(value));
        }
        return std::nullopt;
    });
}

std::optional<std::int64_t> UserDefaults::integerForKey(std::string_view key) const {
    return read<std::int64_t>(key, [](plist_t node) -> std::optional<std::int64_t> {
        if (plist_get_node_type(node) != PLIST_UINT) return std::nullopt;
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return static_cast<std::int64_t>(value);
    });
}

std::optional<std::string> UserDefaults::stringForKey(std::string_view key) const {
    return read<std::string>(key, [](plist_t node) { return bytesOf(node, PLIST_STRING); });
}

std::optional<std::string> UserDefaults::dataForKey(std::string_view key) const {
    return read<std::string>(key, [](plist_t node) { return bytesOf(node, PLIST_DATA); });
}

void UserDefaults::setDouble(std::string_view key, double value) const {
    write(key, plist_new_real(value));
}

void UserDefaults::setInteger(std::string_view key, std::int64_t value) const {
    write(key, plist_new_uint(static_cast<uint64_t>(value)));
}

void UserDefaults::setString(std::string_view key, std::string_view value) const {
    write(key, plist_new_string(std::string(value).c_str()));
}

void UserDefaults::setData(std::string_view key, std::string_view bytes) const {
    write(key, plist_new_data(bytes.data(), bytes.size()));
}

void UserDefaults::removeObject(std::string_view key) const {
    write(key, nullptr);
}

}  // namespace lunoval
