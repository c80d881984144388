#include "desktop/saved_places.hpp"

#include <gio/gio.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "platform/installation.hpp"

namespace lunoval::desktop {

namespace {

using Done = std::function<void(const CommandResult&)>;

void finished(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Done> done(static_cast<Done*>(data));
    auto* process = G_SUBPROCESS(source);
    gchar* output = nullptr;
    gchar* errors = nullptr;
    GError* error = nullptr;
    CommandResult answer;
    if (g_subprocess_communicate_utf8_finish(process, result, &output, &errors, &error)) {
        answer = {.succeeded = g_subprocess_get_successful(process) != FALSE,
                  .output = output ? output : "",
                  .errors = errors ? errors : ""};
    } else {
        answer.errors = error->message;
        g_error_free(error);
    }
    g_free(output);
    g_free(errors);
    g_object_unref(process);
    (*done)(answer);
}

}  // namespace

std::optional<SavedPlaces> parseSavedPlaces(std::string_view json) {
    const auto document = nlohmann::json::parse(json, nullptr, false);
    if (!document.is_object() || !document.contains("locations") ||
        !document["locations"].is_array() ||
        !document.value("selectedIndex", nlohmann::json()).is_number_unsigned()) {
        return std::nullopt;
    }
    SavedPlaces places{.selectedIndex = document["selectedIndex"].get<std::size_t>()};
    for (const auto& place : document["locations"]) {
        if (!place.is_object() || !place.value("name", nlohmann::json()).is_string()) {
            return std::nullopt;
        }
        places.names.push_back(place["name"].get<std::string>());
    }
    return places;
}

void runLocations(const std::vector<std::string>& arguments, Done done) {
    const auto program = installation::prefix() / LUNOVAL_BINDIR / "lunoval";
    std::vector<const char*> argv{program.c_str(), "locations"};
    for (const auto& argument : arguments) argv.push_back(argument.c_str());
    argv.push_back(nullptr);
    GError* error = nullptr;
    GSubprocess* process = g_subprocess_newv(
        argv.data(),
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE), &error);
    if (!process) {
        done({.errors = error->message});
        g_error_free(error);
        return;
    }
    g_subprocess_communicate_utf8_async(process, nullptr, nullptr, finished,
                                        new Done(std::move(done)));
}

void readSavedPlaces(std::function<void(const SavedPlaces&)> done) {
    runLocations({"list", "--json"}, [done = std::move(done)](const CommandResult& result) {
        if (const auto places = parseSavedPlaces(result.output)) done(*places);
    });
}

}  // namespace lunoval::desktop
