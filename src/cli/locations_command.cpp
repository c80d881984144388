#include "cli/locations_command.hpp"

#include <functional>
#include <iostream>
#include <sstream>
#include <utility>

#include "cli/device.hpp"
#include "cli/device_options.hpp"
#include "cli/place_names.hpp"
#include "locations/location_manager.hpp"
#include "locations/widget_location_cache.hpp"
#include "locations/widget_reloader.hpp"
#include "places/place_search.hpp"
#include "places/world_locations.hpp"
#include "platform/files.hpp"
#include "platform/log.hpp"
#include "platform/main_queue.hpp"
#include "platform/number_text.hpp"
#include "platform/standard_directories.hpp"
#include "timeline/moon_widget_data.hpp"

namespace lunoval::cli {

namespace {

// Prints each stage of a device update as the manager announces it.
class PrintingObserver : public LocationObserver {
  public:
    void BeginLocationUpdate() override {
        began = true;
        std::cout << "BeginLocationUpdate\n";
    }
    void LocationUpdated(bool notUpdating) override {
        std::cout << "LocationUpdated: " << (notUpdating ? "true" : "false") << "\n";
    }
    void LocationUpdateFailed() override { std::cout << "LocationUpdateFailed\n"; }
    void LocationServicesPermissionDenied() override {
        denied = true;
        std::cout << "LocationServicesPermissionDenied\n";
    }

    bool began = false;
    bool denied = false;
};

LocationManager& loadedManager() {
    const auto defaults = appGroupDefaults();
    if (defaults.isCorrupt()) {
        throw std::runtime_error(defaults.file().string() +
                                 " is not a property list; fix it or move it away");
    }
    // The host app's one manager, its list loaded once.
    static const std::unique_ptr<LocationManager> manager = [&defaults] {
        auto loaded = std::make_unique<LocationManager>(LocationManagerServices{
            .sharedDefaults = defaults,
            .legacyListFile = documentsDirectory() / "locations.plist",
            .mainQueue = &mainQueue(),
            .makePlatformManager =
                [] { return makePlatformLocationManager(device::locationService(), mainQueue()); },
            .clock = device::clock(),
            .deviceZone = device::timeZone(),
        });
        loaded->loadFromSharedContainerFile();
        return loaded;
    }();
    return *manager;
}

std::size_t savedPlaceIndex(const LocationManager& manager, long long index) {
    if (index == 0) throw UsageError("entry 0 is the device's own position");
    const auto last = static_cast<long long>(manager.Count()) - 1;
    if (index < 1 || index > last) {
        throw UsageError(last < 1
                             ? "there are no saved places"
                             : "no saved place " + std::to_string(index) +
                                   " (the saved places are 1 to " + std::to_string(last) + ")");
    }
    return static_cast<std::size_t>(index);
}

std::string placeLine(const GeoLocationData& place) {
    if (!place.locationInitialized) return place.name + "  (follows the device)";
    return place.name + "  " + doubleDescription(place.latitude) + ", " +
           doubleDescription(place.longitude) + "  " + place.timezoneId;
}

int list(const LocationManager& manager, bool json) {
    if (json) {
        auto places = nlohmann::ordered_json::array();
        for (std::size_t i = 0; i < manager.Count(); ++i) {
            const auto place = *manager.GetLocationDataAtIndex(i);
            places.push_back({{"name", place.name},
                              {"latitude", place.latitude},
                              {"longitude", place.longitude},
                              {"timezoneId", place.timezoneId},
                              {"locationInitialized", place.locationInitialized}});
        }
        std::cout << nlohmann::ordered_json{{"selectedIndex", manager.GetSelectedLocationIndex()},
                                            {"locations", places}}
                         .dump()
                  << "\n";
        return 0;
    }
    for (std::size_t i = 0; i < manager.Count(); ++i) {
        std::cout << (i == manager.GetSelectedLocationIndex() ? "* " : "  ") << i << "  "
                  << placeLine(*manager.GetLocationDataAtIndex(i)) << "\n";
    }
    return 0;
}

GeoLocationData placeOf(const places::Place& city) {
    GeoLocationData place;
    const auto zone = TimeZone::named(city.timezone);
    const auto offset = zone ? zone->offsetFromUTC(device::now()) : std::nullopt;
    place.SetLocation({city.latitude, city.longitude}, city.name, city.timezone,
                      offset.value_or(std::chrono::seconds{0}).count(), false);
    return place;
}

GeoLocationData newPlace(const LocationsOptions& options) {
    if (options.name.empty()) throw UsageError("a place needs a name");
    if (options.latitude.empty() && options.longitude.empty() && options.zone.empty()) {
        return placeOf(placeNamed(options.name));
    }
    if (options.latitude.empty() || options.longitude.empty() || options.zone.empty()) {
        throw UsageError("add takes a city's name alone, or NAME LATITUDE LONGITUDE ZONE");
    }
    const auto where =
        LocationService::parseCoordinates(options.latitude + "," + options.longitude);
    if (!where) {
        throw UsageError("cannot read the coordinates " + options.latitude + " " +
                         options.longitude + " (latitude within ±90, longitude within ±180)");
    }
    if (where->latitude == 0 || where->longitude == 0) {
        throw UsageError(
            "a place on the equator or the prime meridian reads back as unset; "
            "move it a little, such as to 0.0001");
    }
    const auto zone = zoneNamed(options.zone);
    const auto offset = zone.offsetFromUTC(device::now()).value_or(std::chrono::seconds{0});
    GeoLocationData place;
    place.SetLocation({where->latitude, where->longitude}, options.name, zone.identifier(),
                      offset.count(), false);
    return place;
}

int search(const std::string& name) {
    const auto found = places::search(places::cities(), name);
    for (const auto& place : found) std::cout << cityLine(place) << "\n";
    if (found.empty()) std::cerr << "lunoval: no place named '" << name << "'\n";
    return found.empty() ? 1 : 0;
}

int add(LocationManager& manager, GeoLocationData place, const std::string& name) {
    const auto count = manager.Count();
    const auto index = manager.AddToLocationList(std::move(place));
    if (manager.Count() == count) {
        // The list leaves a replaced place unsaved; the user asked for the change to stay.
        manager.saveToSharedContainerFile();
        std::cout << "Replaced " << index << "  " << name << "\n";
    } else {
        std::cout << "Added " << index << "  " << name << "\n";
    }
    return 0;
}

// The selected place becomes what a widget without a device location shows.
// The device's own position is saved without a name, so the widget names no place.
enum class SavedAs { device, namedPlace };

void saveWidgetData(const GeoLocationData& place, SavedAs savedAs) {
    MoonWidgetData record{
        .latitude = place.latitude, .longitude = place.longitude, .timezone = place.timezoneId};
    if (savedAs == SavedAs::namedPlace) record.locationName = place.name;
    appGroupDefaults().setData("widgetData", encodeWidgetData(record));
    WidgetReloader::reloadAllTimelines();
}

std::string seconds(double value) {
    std::ostringstream text;
    text << value << " s";
    return text.str();
}

// Runs the main queue while `start`'s update lasts; whether it found the device.
int update(LocationManager& manager, double timeout, const std::function<void()>& start) {
    PrintingObserver observer;
    manager.SubscribeToNotification(&observer);
    manager.SetUpdateTimer(timeout);
    start();
    mainQueue().runDue();  // a fix at hand comes without a wait
    bool said = false;
    mainQueue().runUntil([&] {
        if (!manager.isUpdatingCurrentLocation()) return true;
        // Once access is settled and the search for a fix has begun.
        if (observer.began && !std::exchange(said, true)) {
            log::note("Waiting for a fix from location services (up to " + seconds(timeout) +
                      "; --timeout sets it)…");
        }
        return false;
    });
    mainQueue().runDue();
    manager.UnsubscribeToNotification(&observer);
    if (manager.startingPoint()) {
        std::cout << placeLine(manager.userCurrentLocation()) << "\n";
        return 0;
    }
    std::cerr << "lunoval: "
              << (observer.denied                       ? "location services denied access"
                  : manager.isUpdatingCurrentLocation() ? "location services have not been "
                                                          "authorized yet"
                                                        : "no device location before the "
                                                          "update ended")
              << "\n";
    return 1;
}

int select(LocationManager& manager, long long index, double timeout) {
    if (index == 0) {
        const int status = update(manager, timeout, [&] { manager.ChangeSelectedLocation(0); });
        if (status == 0) {
            // The list keeps a device selection in memory only; here it is the user's choice.
            manager.saveSelectedLocationToSharedPrefs();
            saveWidgetData(manager.userCurrentLocation(), SavedAs::device);
        }
        return status;
    }
    const auto selected = savedPlaceIndex(manager, index);
    manager.ChangeSelectedLocation(selected);
    saveWidgetData(*manager.GetLocationDataAtIndex(selected), SavedAs::namedPlace);
    std::cout << "Selected " << selected << "  " << *manager.GetLocationNameAtIndex(selected)
              << "\n";
    return 0;
}

}  // namespace

CLI::App* addLocationsCommand(CLI::App& app, LocationsOptions& options) {
    auto* command = app.add_subcommand("locations", "The saved places shared with the widgets");
    command->require_subcommand(1);
    command->add_subcommand("list", "Every place; * marks the selected one")
        ->add_flag("--json", options.json, "One JSON object");
    auto* add = command->add_subcommand(
        "add",
        "Save a city by name, or any place by NAME LAT LNG ZONE (one of the same name "
        "is replaced)");
    add->add_option("name", options.name, "A city, such as Paris or \"Quito, Ecuador\"")
        ->required();
    add->add_option("latitude", options.latitude, "Degrees, north positive");
    add->add_option("longitude", options.longitude, "Degrees, east positive");
    add->add_option("zone", options.zone, "Its time zone, such as Europe/Paris");
    command->add_subcommand("search", "Cities of the world locations by name")
        ->add_option("name", options.name, "A city's name, or its beginning")
        ->required();
    // Far more than a list ever holds; savedPlaceIndex says which ones there are.
    constexpr NumberRange kIndices{0, 999999};
    addNumberOption(*command->add_subcommand("remove", "Remove a saved place"), "index",
                    options.index, "Its index", kIndices)
        ->required();
    auto* move = command->add_subcommand("move", "Move a saved place to another index");
    addNumberOption(*move, "from", options.index, "Its index", kIndices)->required();
    addNumberOption(*move, "to", options.to, "Its new index", kIndices)->required();
    auto* select =
        command->add_subcommand("select", "Select a place (0: follow the device) for the widgets");
    addNumberOption(*select, "index", options.index, "Its index", kIndices)->required();
    auto* update =
        command->add_subcommand("update", "Find the device's position, printing each stage");
    for (auto* waits : {select, update}) {
        addNumberOption(*waits, "--timeout", options.timeout,
                        "Seconds to wait for a fix (default: 300)", {1, 86400});
    }
    return command;
}

int runLocations(const CLI::App& command, const LocationsOptions& options) {
    const auto name = command.get_subcommands().front()->get_name();
    if (name == "search") return search(options.name);
    // An edit reads the whole list and writes it back; two at once would lose one. An update
    // writes no list, and may wait minutes for a fix.
    std::optional<FileLock> editing;
    if (name != "update") {
        const auto folder = appGroupDefaults().file().parent_path();
        std::filesystem::create_directories(folder);
        editing.emplace(folder / "locations",
                        name == "list" ? FileLock::Mode::shared : FileLock::Mode::exclusive);
    }
    if (name == "add") {
        auto place = newPlace(options);  // checked before the list is touched
        const auto saved = place.name;
        return add(loadedManager(), std::move(place), saved);
    }
    auto& manager = loadedManager();
    if (name == "list") return list(manager, options.json);
    if (name == "remove") {
        manager.RemoveFromLocationList(savedPlaceIndex(manager, options.index));
        return 0;
    }
    if (name == "move") {
        const auto from = savedPlaceIndex(manager, options.index);
        manager.RearrangeItem(from, savedPlaceIndex(manager, options.to));
        manager.saveToSharedContainerFile();
        return 0;
    }
    const auto timeout = options.timeout.value_or(kUpdateTimerSeconds);
    if (name == "select") return select(manager, options.index, timeout);
    return update(manager, timeout, [&] { manager.UpdateUserCurrentLocation(); });
}

}  // namespace lunoval::cli
