#include "places/place_search.hpp"

#include <glib.h>

#include <algorithm>
#include <memory>

namespace lunoval::places {

namespace {

struct Query {
    std::string name;
    std::vector<std::string> qualifiers;  // each a region or a country
};

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Query parse(std::string_view text) {
    Query query;
    auto comma = text.find(',');
    query.name = folded(trimmed(text.substr(0, comma)));
    while (comma != std::string_view::npos) {
        text.remove_prefix(comma + 1);
        comma = text.find(',');
        query.qualifiers.push_back(folded(trimmed(text.substr(0, comma))));
    }
    return query;
}

bool qualifies(const Place& place, const Query& query) {
    return std::ranges::all_of(query.qualifiers, [&](const std::string& qualifier) {
        return qualifier == folded(place.region) || qualifier == folded(place.country);
    });
}

// "America/Sao_Paulo" is named after "sao paulo".
std::string zoneCity(std::string_view zone) {
    std::string city(zone.substr(zone.rfind('/') + 1));
    std::ranges::replace(city, '_', ' ');
    return folded(city);
}

}  // namespace

std::string folded(std::string_view text) {
    const std::unique_ptr<char, decltype(&g_free)> decomposed(
        g_utf8_normalize(text.data(), static_cast<gssize>(text.size()), G_NORMALIZE_NFD), g_free);
    if (!decomposed) return {};
    std::string bare;
    for (const char* at = decomposed.get(); *at != '\0';) {
        const char* next = g_utf8_next_char(at);
        if (g_unichar_ismark(g_utf8_get_char(at)) == FALSE) bare.append(at, next);
        at = next;
    }
    const std::unique_ptr<char, decltype(&g_free)> casefolded(
        g_utf8_casefold(bare.c_str(), static_cast<gssize>(bare.size())), g_free);
    return casefolded.get();
}

std::vector<Place> search(const std::vector<Place>& cities, std::string_view text) {
    const auto query = parse(text);
    std::vector<Place> named;
    std::vector<Place> starting;
    if (query.name.empty()) return named;
    for (const auto& city : cities) {
        const auto name = folded(city.name);
        // The qualifiers are folded only for a name that matches.
        if (!name.starts_with(query.name) || !qualifies(city, query)) continue;
        (name == query.name ? named : starting).push_back(city);
    }
    named.insert(named.end(), starting.begin(), starting.end());
    return named;
}

Resolution resolve(const std::vector<Place>& cities, std::string_view text) {
    auto found = search(cities, text);
    const auto name = parse(text).name;
    const auto exact = std::ranges::count_if(
        found, [&](const Place& place) { return folded(place.name) == name; });
    if (exact == 1) return {.place = found.front()};
    if (exact > 1) {
        found.resize(static_cast<std::size_t>(exact));
        const auto zoneNamed = std::ranges::count_if(
            found, [&](const Place& place) { return zoneCity(place.timezone) == name; });
        if (zoneNamed == 1) {
            return {.place = *std::ranges::find_if(found, [&](const Place& place) {
                        return zoneCity(place.timezone) == name;
                    })};
        }
    }
    return {.candidates = std::move(found)};
}

}  // namespace lunoval::places
