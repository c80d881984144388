#include "phasegen/year_table.hpp"

#include <plist/plist.h>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "phasegen/phase_events.hpp"

namespace lunoval::phasegen {

namespace {

struct NodeDeleter {
    void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct XmlDeleter {
    void operator()(char* xml) const { plist_to_xml_free(xml); }
};

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

std::string fileError(const std::filesystem::path& file, int error) {
    const std::string reason = error != 0 ? ": " + std::generic_category().message(error) : "";
    return "cannot write " + file.string() + reason;
}

// A write that fails once the file is open removes the file, so no half-written table survives.
void writeFile(const std::filesystem::path& file, const std::string& content) {
    errno = 0;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (!out.is_open()) throw std::runtime_error(fileError(file, errno));
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    if (!out.fail()) return;
    const int error = errno;
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    throw std::runtime_error(fileError(file, error));
}

}  // namespace

std::string yearTableXml(int year) {
    const Node root = tableNode(linesByMonth(year));
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    const std::unique_ptr<char, XmlDeleter> owned(xml);
    if (!owned) throw std::runtime_error("cannot encode the table of " + std::to_string(year));
    return {owned.get(), length};
}

void writeYearTables(const std::filesystem::path& folder, int firstYear, int lastYear) {
    std::filesystem::create_directories(folder);
    for (int year = firstYear; year <= lastYear; ++year) {
        writeFile(folder / (std::to_string(year) + ".plist"), yearTableXml(year));
    }
}

}  // namespace lunoval::phasegen
