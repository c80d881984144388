#include "eclipsegen/eclipse_catalogue.hpp"

#include <date/date.h>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>

#include "eclipsegen/eclipse_geometry.hpp"
#include "ephemeris/delta_t.hpp"
#include "ephemeris/lunation.hpp"
#include "platform/files.hpp"

namespace lunoval::eclipsegen {

namespace {

// Lunation numbers estimated from the year are a fraction of a lunation off; one more on each
// side makes sure no syzygy of the years is left out.
std::int64_t lunationBefore(int year) {
    return static_cast<std::int64_t>(std::floor((year - 2000) * ephemeris::lunationsPerYear)) - 1;
}

std::int64_t lunationAfter(int year) {
    return static_cast<std::int64_t>(std::ceil((year + 1 - 2000) * ephemeris::lunationsPerYear)) +
           1;
}

std::optional<EclipseKind> eclipseKind(const EclipseGeometry& geometry, Syzygy syzygy) {
    return syzygy == Syzygy::newMoon ? solarEclipseKind(geometry.gamma, geometry.u)
                                     : lunarEclipseKind(geometry.gamma, geometry.u);
}

std::optional<CatalogueEclipse> eclipseAt(std::int64_t lunation, Syzygy syzygy) {
    const std::optional<EclipseGeometry> geometry = eclipseGeometry(lunation, syzygy);
    if (!geometry) return std::nullopt;
    const std::optional<EclipseKind> kind = eclipseKind(*geometry, syzygy);
    if (!kind) return std::nullopt;
    return CatalogueEclipse{ephemeris::nearestCalendarMinute(
                                ephemeris::universalJulianDay(geometry->julianEphemerisDay)),
                            *kind};
}

bool fallsBetween(const CatalogueEclipse& eclipse, int firstYear, int lastYear) {
    const date::year year = eclipse.time.date.year();
    return year >= date::year(firstYear) && year <= date::year(lastYear);
}

std::string header(int firstYear, int lastYear) {
    const std::string from = std::to_string(firstYear);
    const std::string to = std::to_string(lastYear);
    return "# Every solar and lunar eclipse from " + from + " through " + to +
           ", one line each in chronological order:\n"
           "# \"MM/dd/yyyy HH:mm,KEY\", the instant of greatest eclipse in UTC rounded to the "
           "nearest minute, then the key.\n"
           "# Keys: TSE total, ASE annular, HSE hybrid (total along part of its path, annular "
           "along the rest),\n"
           "# PSE partial solar eclipse; TLE total, PLE partial, NLE penumbral lunar eclipse.\n"
           "# Computed for each new and full moon with Meeus' eclipse method (Astronomical "
           "Algorithms, 2nd ed., chapter 54),\n"
           "# from TT to UTC with ΔT from the Espenak & Meeus polynomials and observed values.\n"
           "# Regenerate from the repository root (a test checks that this file is what the "
           "generator writes):\n"
           "#   cmake -S . -B build -G Ninja && cmake --build build --target lunoval-eclipsegen && "
           "build/tools/eclipsegen/lunoval-eclipsegen --out "
           "resources/com.orvane.Orvane/Data/events.txt --from " +
           from + " --to " + to + "\n";
}

}  // namespace

std::vector<CatalogueEclipse> eclipsesBetween(int firstYear, int lastYear) {
    std::vector<CatalogueEclipse> eclipses;
    for (std::int64_t lunation = lunationBefore(firstYear); lunation <= lunationAfter(lastYear);
         ++lunation) {
        for (const Syzygy syzygy : {Syzygy::newMoon, Syzygy::fullMoon}) {
            const std::optional<CatalogueEclipse> eclipse = eclipseAt(lunation, syzygy);
            if (eclipse && fallsBetween(*eclipse, firstYear, lastYear))
                eclipses.push_back(*eclipse);
        }
    }
    return eclipses;
}

std::string catalogueLine(const CatalogueEclipse& eclipse) {
    const date::sys_time<std::chrono::minutes> instant =
        date::sys_days(eclipse.time.date) + eclipse.time.hour + eclipse.time.minute;
    return date::format("%m/%d/%Y %H:%M,", instant) + std::string(catalogueKey(eclipse.kind));
}

std::string catalogueText(int firstYear, int lastYear) {
    std::string text = header(firstYear, lastYear);
    for (const CatalogueEclipse& eclipse : eclipsesBetween(firstYear, lastYear)) {
        text += catalogueLine(eclipse) + '\n';
    }
    return text;
}

void writeCatalogue(const std::filesystem::path& path, int firstYear, int lastYear) {
    writeFileAtomically(path, catalogueText(firstYear, lastYear));
}

}  // namespace lunoval::eclipsegen
