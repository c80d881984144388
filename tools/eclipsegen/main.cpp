#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "eclipsegen/eclipse_catalogue.hpp"

int main(int argc, char** argv) {
    using lunoval::eclipsegen::firstCatalogueYear;
    using lunoval::eclipsegen::lastCatalogueYear;

    CLI::App app{"Writes the catalogue of solar and lunar eclipses."};
    std::string file;
    int firstYear = firstCatalogueYear;
    int lastYear = lastCatalogueYear;
    const CLI::Range years(firstCatalogueYear, lastCatalogueYear);
    app.add_option("--out", file, "Catalogue file to write")->required();
    app.add_option("--from", firstYear, "First year")->check(years);
    app.add_option("--to", lastYear, "Last year")->check(years);
    app.callback([&] {
        if (firstYear > lastYear) throw CLI::ValidationError("--from", "is after --to");
    });
    try {
        app.parse(argc, argv);
        lunoval::eclipsegen::writeCatalogue(file, firstYear, lastYear);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;  // bad arguments exit with 2, as lunoval does
    } catch (const std::exception& error) {
        std::cerr << "lunoval-eclipsegen: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
