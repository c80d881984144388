#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lunoval::plist {

// A dictionary of string keys to arrays of strings, in the file's own key order: the one
// shape of property list the phase tables use.
using StringArrayDictionary = std::vector<std::pair<std::string, std::vector<std::string>>>;

// Parses XML or binary property-list bytes; absent when they do not parse or the root has
// any other shape.
std::optional<StringArrayDictionary> parseStringArrayDictionary(const std::string& bytes);

}  // namespace lunoval::plist
