// The property-list files read from the user's folders: the shared defaults (with the widget's
// location cache and the saved places), the older list of places and the private store.
#include <unistd.h>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "locations/legacy_location_list.hpp"
#include "locations/location_manager.hpp"
#include "locations/ov_storage.hpp"
#include "locations/widget_location_cache.hpp"

namespace {

const std::filesystem::path& folder() {
    static const auto path =
        std::filesystem::temp_directory_path() / ("lunoval-fuzz-" + std::to_string(::getpid()));
    static const bool made = std::filesystem::create_directories(path) || true;
    (void)made;
    return path;
}

// A plain write: the input need not survive a crash, and syncing each one would slow the search.
void place(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Each damaged input is kept aside under a name of its own; a run makes millions.
void removeKeptAside() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder(), ignored)) {
        if (entry.path().filename().string().find(".corrupt-") != std::string::npos) {
            std::filesystem::remove(entry.path(), ignored);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lunoval;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto file = folder() / "input.plist";
    place(file, bytes);

    const UserDefaults defaults(file);
    const auto now = Date::fromTimeIntervalSince1970(1760000000);
    (void)widgetcache::cachedLocation(defaults, Location{48.85, 2.35}, now);
    (void)widgetcache::shouldRequestLocation(defaults, now);
    ManualQueue queue(now);
    place(folder() / "legacy.plist", bytes);
    LocationManager places({.sharedDefaults = UserDefaults(folder() / "copy.plist"),
                            .legacyListFile = folder() / "legacy.plist",
                            .mainQueue = &queue,
                            .makePlatformManager = nullptr,
                            .clock = queue.clock()});
    place(folder() / "copy.plist", bytes);
    places.loadFromSharedContainerFile();
    (void)places.GetLocationDataAtIndex(places.GetSelectedLocationIndex());

    if (const auto lines = readLegacyLocationFile(file)) {
        for (const auto& line : *lines) (void)parseLegacyLocationLine(line);
    }
    const OVStorage store(file, folder() / "absent");
    (void)store.objectForKey("scale");
    removeKeptAside();
    return 0;
}
