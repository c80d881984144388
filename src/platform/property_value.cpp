#include "platform/property_value.hpp"

#include <cstdint>
#include <limits>

#include "platform/files.hpp"

namespace lunoval {

namespace {

// Property-list dates count from 2001-01-01 UTC.
constexpr double kSecondsFrom1970To2001 = 978307200;

PropertyValue dataOf(plist_t node) {
    uint64_t length = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &length));
    return PropertyValue::binary(bytes != nullptr ? std::vector<std::uint8_t>(bytes, bytes + length)
                                                  : std::vector<std::uint8_t>{});
}

PropertyValue dictionaryOf(plist_t node) {
    auto object = PropertyValue::object();
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(node, &rawIterator);
    const plist::Iterator iterator(rawIterator);
    for (;;) {
        char* rawKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator.get(), &rawKey, &item);
        const plist::CString key(rawKey);
        if (!key) return object;
        object[key.get()] = propertyValue(item);
    }
}

PropertyValue arrayOf(plist_t node) {
    auto array = PropertyValue::array();
    const uint32_t count = plist_array_get_size(node);
    for (uint32_t i = 0; i < count; ++i)
        array.push_back(propertyValue(plist_array_get_item(node, i)));
    return array;
}

}  // namespace

PropertyValue propertyValue(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return value != 0;
        }
        case PLIST_UINT: {
            uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return static_cast<std::int64_t>(value);
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return value;
        }
        case PLIST_DATE: {
            int32_t seconds = 0;
            int32_t micros = 0;
            plist_get_date_val(node, &seconds, &micros);
            return kSecondsFrom1970To2001 + seconds + micros / 1e6;
        }
        case PLIST_STRING:
            return plist::stringOf(node);
        case PLIST_DATA:
            return dataOf(node);
        case PLIST_ARRAY:
            return arrayOf(node);
        case PLIST_DICT:
            return dictionaryOf(node);
        default:
            return nullptr;
    }
}

plist::Node propertyNode(const PropertyValue& value) {
    switch (value.type()) {
        case PropertyValue::value_t::boolean:
            return plist::Node(plist_new_bool(value.get<bool>() ? 1 : 0));
        case PropertyValue::value_t::number_integer:
        case PropertyValue::value_t::number_unsigned:
            return plist::Node(plist_new_uint(static_cast<uint64_t>(value.get<std::int64_t>())));
        case PropertyValue::value_t::number_float:
            return plist::Node(plist_new_real(value.get<double>()));
        case PropertyValue::value_t::string:
            return plist::Node(plist_new_string(value.get_ref<const std::string&>().c_str()));
        case PropertyValue::value_t::binary: {
            const auto& bytes = value.get_binary();
            return plist::Node(
                plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        }
        case PropertyValue::value_t::array: {
            plist::Node array(plist_new_array());
            for (const auto& item : value) {
                if (auto node = propertyNode(item))
                    plist_array_append_item(array.get(), node.release());
            }
            return array;
        }
        case PropertyValue::value_t::object: {
            plist::Node dictionary(plist_new_dict());
            for (const auto& [key, item] : value.items()) {
                if (auto node = propertyNode(item)) {
                    plist_dict_set_item(dictionary.get(), key.c_str(), node.release());
                }
            }
            return dictionary;
        }
        default:
            return nullptr;
    }
}

std::optional<PropertyValue> parsePropertyList(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max()) return std::nullopt;
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &raw);
    const plist::Node root(raw);
    if (!root) return std::nullopt;
    return propertyValue(root.get());
}

std::optional<PropertyValue> parsePropertyDictionary(std::string_view bytes) {
    auto root = parsePropertyList(bytes);
    if (!root || !root->is_object()) return std::nullopt;
    return root;
}

std::string propertyListXml(const PropertyValue& value) {
    const auto node = propertyNode(value);
    if (!node) return {};
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(node.get(), &xml, &length);
    const plist::CString owned(xml);
    return owned ? std::string(owned.get(), length) : std::string{};
}

DictionaryFile readDictionaryFile(const std::filesystem::path& path) {
    const auto bytes = readWholeFile(path);
    if (!bytes || bytes->empty()) return {};
    auto dictionary = parsePropertyDictionary(*bytes);
    const bool corrupt = !dictionary;
    return {std::move(dictionary), corrupt};
}

}  // namespace lunoval
