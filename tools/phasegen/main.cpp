#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "phasegen/year_table.hpp"

int main(int argc, char** argv) {
    using lunoval::phasegen::firstTableYear;
    using lunoval::phasegen::lastTableYear;

    CLI::App app{"Writes the principal moon phase tables, one property list per year."};
    std::string folder;
    int firstYear = firstTableYear;
    int lastYear = lastTableYear;
    const CLI::Range years(firstTableYear, lastTableYear);
    app.add_option("--out", folder, "Folder that receives <year>.plist")->required();
    app.add_option("--from", firstYear, "First year")->check(years);
    app.add_option("--to", lastYear, "Last year")->check(years);
    app.callback([&] {
        if (firstYear > lastYear) throw CLI::ValidationError("--from", "is after --to");
    });
    try {
        app.parse(argc, argv);
        lunoval::phasegen::writeYearTables(folder, firstYear, lastYear);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;  // bad arguments exit with 2, as lunoval does
    } catch (const std::exception& error) {
        std::cerr << "lunoval-phasegen: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
