#include "platform/property_list.hpp"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include "platform/plist_handles.hpp"

namespace lunoval::plist {

namespace {

std::optional<std::string> stringValue(plist_t node) {
    if (plist_get_node_type(node) != PLIST_STRING) return std::nullopt;
    return stringOf(node);
}

std::optional<std::vector<std::string>> stringArray(plist_t node) {
    if (plist_get_node_type(node) != PLIST_ARRAY) return std::nullopt;
    std::vector<std::string> items;
    const uint32_t count = plist_array_get_size(node);
    items.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        auto item = stringValue(plist_array_get_item(node, i));
        if (!item) return std::nullopt;
        items.push_back(std::move(*item));
    }
    return items;
}

}  // namespace

std::optional<StringArrayDictionary> parseStringArrayDictionary(const std::string& bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max()) return std::nullopt;
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &raw);
    const Node root(raw);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;

    StringArrayDictionary entries;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(root.get(), &rawIterator);
    const Iterator iterator(rawIterator);
    for (;;) {
        char* rawKey = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(root.get(), iterator.get(), &rawKey, &value);
        const CString key(rawKey);
        if (!key) return entries;
        auto items = stringArray(value);
        if (!items) return std::nullopt;
        entries.emplace_back(key.get(), std::move(*items));
    }
}

}  // namespace lunoval::plist
