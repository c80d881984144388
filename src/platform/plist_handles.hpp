#pragma once

#include <plist/plist.h>
#include <cstdlib>
#include <memory>
#include <string>

namespace lunoval::plist {

struct NodeDeleter {
    void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

// libplist hands out strings, XML and iterators allocated with malloc.
struct MallocDeleter {
    void operator()(void* memory) const { std::free(memory); }  // NOLINT(*-no-malloc)
};
using CString = std::unique_ptr<char, MallocDeleter>;
using Iterator = std::unique_ptr<void, MallocDeleter>;

// A string node's text, NUL characters included: the library's copying accessor aborts on
// those, and a damaged file may hold them.
inline std::string stringOf(plist_t node) {
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return text != nullptr ? std::string(text, length) : std::string{};
}

}  // namespace lunoval::plist
