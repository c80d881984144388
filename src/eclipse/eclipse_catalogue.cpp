#include "eclipse/eclipse_catalogue.hpp"

#include <map>
#include <optional>
#include <string>

#include "eclipse/catalogue_text.hpp"
#include "platform/calendar.hpp"
#include "platform/date_formatter.hpp"
#include "platform/log.hpp"

namespace lunoval {

namespace {

constexpr int kFirstYear = 1900;
constexpr int kLastYear = 2100;

void warn(const std::string& text) {
    log::line("Warning: " + text);
}

struct Fields {
    std::string_view date;
    std::string_view key;
};

std::optional<Fields> splitFields(std::string_view line) {
    const auto comma = line.find(',');
    if (comma == std::string_view::npos || line.find(',', comma + 1) != std::string_view::npos) {
        return std::nullopt;
    }
    return Fields{trimWhitespace(line.substr(0, comma)), trimWhitespace(line.substr(comma + 1))};
}

// Reads the catalogue's lines into a table. The formatter is made only for a date not written
// out in full, and each key's title is localised once: seven keys stand on over 900 lines.
class CatalogueReader {
  public:
    explicit CatalogueReader(const TimeZone& yearZone) : calendar_(yearZone) {}

    void addLine(EclipseTable& table, std::string_view line, const std::string& number) {
        const auto fields = splitFields(line);
        if (!fields) return warn("Invalid entry at line " + number + ": " + std::string(line));
        const auto [dateText, key] = *fields;
        if (key.empty()) return warn("Empty event key at line " + number);
        const auto& title = titleOf(key);
        if (!title) return warn("Unknown event key '" + std::string(key) + "' at line " + number);
        const auto date = checkedDate(dateText, number);
        if (!date) return;
        if (table.contains(*date)) {
            return warn("Duplicate date entry at line " + number + ": " + std::string(dateText));
        }
        table.emplace(*date, std::make_shared<EclipseEvent>(EclipseEvent{
                                 .key = std::string(key),
                                 .title = *title,
                                 .datetime = *date,
                                 .isLunarEvent = key.find("LE") != std::string_view::npos,
                                 .isVisible = true}));
    }

  private:
    const std::optional<std::string>& titleOf(std::string_view key) {
        auto found = titles_.find(key);
        if (found == titles_.end()) found = titles_.emplace(key, eclipseTitle(key)).first;
        return found->second;
    }

    std::optional<Date> parseDate(std::string_view text) {
        if (auto date = fullyWrittenDate(text)) return date;
        if (!formatter_) formatter_.emplace("MM/dd/yyyy HH:mm");
        return formatter_->parse(text);
    }

    // The instant of a date text within the tabulated years; absent after its warning.
    std::optional<Date> checkedDate(std::string_view text, const std::string& number) {
        if (text.empty()) {
            warn("Empty date string at line " + number);
            return std::nullopt;
        }
        const auto date = parseDate(text);
        if (!date) {
            warn("Could not parse date '" + std::string(text) + "' at line " + number);
            return std::nullopt;
        }
        const auto local = calendar_.components(*date);
        if (!local || local->year < kFirstYear || local->year > kLastYear) {
            // Unquoted, unlike the other warnings.
            warn("Date " + std::string(text) + " is outside valid range (1900-2100)");
            return std::nullopt;
        }
        return date;
    }

    Calendar calendar_;
    std::optional<UTCDateParser> formatter_;
    std::map<std::string, std::optional<std::string>, std::less<>> titles_;
};

}  // namespace

EclipseTable parseCatalogue(std::string_view text, const TimeZone& yearZone) {
    CatalogueReader reader(yearZone);
    EclipseTable table;
    const auto lines = splitLines(text);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const auto line = trimWhitespace(lines[index]);
        if (line.empty() || line.starts_with('#')) continue;
        reader.addLine(table, line, std::to_string(index + 1));
    }
    return table;
}

}  // namespace lunoval
