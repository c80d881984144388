#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/plist_handles.hpp"

namespace lunoval {

// A property-list value held as a JSON tree: booleans, integers, reals, strings, data (as
// binary), arrays and dictionaries (objects, keys in file order). Dates read as seconds since
// 1970.
using PropertyValue = nlohmann::ordered_json;

PropertyValue propertyValue(plist_t node);
// Null values, and null entries of arrays and dictionaries, have no node and are left out.
plist::Node propertyNode(const PropertyValue& value);

// Absent when the bytes do not parse as a property list (XML or binary).
std::optional<PropertyValue> parsePropertyList(std::string_view bytes);
// Absent also when the root is not a dictionary.
std::optional<PropertyValue> parsePropertyDictionary(std::string_view bytes);
std::string propertyListXml(const PropertyValue& value);

// A dictionary file as found on disk: absent, a dictionary, or something else.
struct DictionaryFile {
    std::optional<PropertyValue> dictionary;
    bool corrupt = false;  // present and not empty, but not a dictionary
};
DictionaryFile readDictionaryFile(const std::filesystem::path& path);

}  // namespace lunoval
