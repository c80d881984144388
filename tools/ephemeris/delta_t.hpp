#pragma once

namespace lunoval::ephemeris {

// TT − UT in seconds at decimal year y (month m of year Y is y = Y + (m − 0.5) / 12): the
// Espenak & Meeus polynomials from 1900 to 2005 and from 2050 to 2150, observed values from
// 2005 to 2025, and between 2025 and 2050 the polynomial shifted to meet the last observation.
// The 1900 expression also serves the last days of 1899, which the phase tables only look at
// to leave them out.
double deltaTSeconds(double decimalYear);

// A Julian Ephemeris Day (TT) as a Julian day in UT, with ΔT taken for its calendar month.
double universalJulianDay(double julianEphemerisDay);

}  // namespace lunoval::ephemeris
