#pragma once

#include <plist/plist.h>
#include <cstdlib>
#include <memory>

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

}  // namespace lunoval::plist
