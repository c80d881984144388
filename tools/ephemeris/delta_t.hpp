#pragma once

namespace lunoval::ephemeris {

// TT − UT in seconds by the Espenak & Meeus polynomials, at decimal year y (month m of year Y
// is y = Y + (m − 0.5) / 12). They hold from 1900 to 2150; the 1900 expression also serves
// the last days of 1899, which the phase tables only look at to leave them out.
double deltaTSeconds(double decimalYear);

// A Julian Ephemeris Day (TT) as a Julian day in UT, with ΔT taken for its calendar month.
double universalJulianDay(double julianEphemerisDay);

}  // namespace lunoval::ephemeris
