#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lunoval::desktop {

// The saved places as `lunoval locations list --json` tells them: entry 0 is the device.
struct SavedPlaces {
    std::vector<std::string> names;
    std::size_t selectedIndex = 0;
};

// Absent when the text is not such a list.
std::optional<SavedPlaces> parseSavedPlaces(std::string_view json);

struct CommandResult {
    bool succeeded = false;
    std::string output;
    std::string errors;
};

// Runs `lunoval locations ARGUMENTS...` without waiting, so the list's own rules and locks
// apply, and hands its result to `done` on the main loop.
void runLocations(const std::vector<std::string>& arguments,
                  std::function<void(const CommandResult&)> done);

// The saved places, read in the background; `done` is not called when they cannot be read.
void readSavedPlaces(std::function<void(const SavedPlaces&)> done);

}  // namespace lunoval::desktop
