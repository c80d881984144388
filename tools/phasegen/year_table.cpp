#include "phasegen/year_table.hpp"

#include <plist/plist.h>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "phasegen/phase_events.hpp"
#include "platform/files.hpp"
#include "platform/plist_handles.hpp"

namespace lunoval::phasegen {

namespace {

using plist::Node;

constexpr std::size_t monthsPerYear = 12;
using MonthLines = std::array<std::vector<std::string>, monthsPerYear>;

MonthLines linesByMonth(int year) {
    MonthLines months;
    for (const PhaseEvent& event : phaseEventsOfYear(year)) {
        months.at(static_cast<unsigned>(event.time.date.month()) - 1).push_back(eventLine(event));
    }
    return months;
}

Node tableNode(const MonthLines& months) {
    Node root(plist_new_dict());
    for (std::size_t index = 0; index < months.size(); ++index) {
        plist_t lines = plist_new_array();
        for (const std::string& line : months.at(index)) {
            plist_array_append_item(lines, plist_new_string(line.c_str()));
        }
        plist_dict_set_item(root.get(), std::to_string(index + 1).c_str(), lines);
    }
    return root;
}

}  // namespace

std::string yearTableXml(int year) {
    const Node root = tableNode(linesByMonth(year));
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    const plist::CString owned(xml);
    if (!owned) throw std::runtime_error("cannot encode the table of " + std::to_string(year));
    return {owned.get(), length};
}

void writeYearTables(const std::filesystem::path& folder, int firstYear, int lastYear) {
    std::filesystem::create_directories(folder);
    for (int year = firstYear; year <= lastYear; ++year) {
        writeFileAtomically(folder / (std::to_string(year) + ".plist"), yearTableXml(year));
    }
}

}  // namespace lunoval::phasegen
