#include "tools/year_table_file.hpp"

#include <plist/plist.h>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

namespace lunoval::tablefiles {

namespace {

struct NodeDeleter {
    void operator()(plist_t node) const { plist_free(node); }
};

// libplist hands out keys, strings and iterators allocated with malloc.
struct MallocDeleter {
    void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc)
};

std::optional<std::vector<std::string>> stringArray(plist_t node) {
    if (plist_get_node_type(node) != PLIST_ARRAY) return std::nullopt;
    std::vector<std::string> lines;
    for (std::uint32_t index = 0; index < plist_array_get_size(node); ++index) {
        const plist_t item = plist_array_get_item(node, index);
        if (plist_get_node_type(item) != PLIST_STRING) return std::nullopt;
        char* text = nullptr;
        plist_get_string_val(item, &text);
        lines.emplace_back(std::unique_ptr<char, MallocDeleter>(text).get());
    }
    return lines;
}

}  // namespace

std::string readWholeFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::optional<YearTableFile> parseYearTable(const std::string& xml) {
    plist_t raw = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &raw);
    const std::unique_ptr<void, NodeDeleter> root(raw);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(root.get(), &rawIterator);
    const std::unique_ptr<void, MallocDeleter> iterator(rawIterator);
    YearTableFile table;
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(root.get(), iterator.get(), &key, &value);
        const std::unique_ptr<char, MallocDeleter> ownedKey(key);
        if (!ownedKey) return table;
        auto lines = stringArray(value);
        if (!lines) return std::nullopt;
        table.emplace_back(ownedKey.get(), std::move(*lines));
    }
}

}  // namespace lunoval::tablefiles
