#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "eclipsegen/eclipse_kind.hpp"
#include "ephemeris/julian_day.hpp"

namespace lunoval::eclipsegen {

// The years the shipped catalogue covers.
inline constexpr int firstCatalogueYear = 1900;
inline constexpr int lastCatalogueYear = 2100;

struct CatalogueEclipse {
    ephemeris::CalendarMinute time;  // greatest eclipse, UTC
    EclipseKind kind = EclipseKind::partialSolar;
};

// Every solar and lunar eclipse whose greatest eclipse, rounded to the minute in UTC, falls in
// the years from first to last, in chronological order.
std::vector<CatalogueEclipse> eclipsesBetween(int firstYear, int lastYear);

// The catalogue's line for an eclipse: "MM/dd/yyyy HH:mm,KEY", for example "04/08/2024 18:17,TSE".
std::string catalogueLine(const CatalogueEclipse& eclipse);

// The whole catalogue file: a comment block that says what it holds and how to regenerate it,
// then one line per eclipse.
std::string catalogueText(int firstYear, int lastYear);

// Writes the catalogue to path, whole or not at all. Throws std::system_error naming the file
// when it cannot be written.
void writeCatalogue(const std::filesystem::path& path, int firstYear, int lastYear);

}  // namespace lunoval::eclipsegen
