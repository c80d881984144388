#include "eclipsegen/eclipse_catalogue.hpp"
#include "generator_main.hpp"

int main(int argc, char** argv) {
    using namespace lunoval::eclipsegen;
    return lunoval::tools::runGenerator(
        argc, argv,
        {.name = "lunoval-eclipsegen",
         .description = "Writes the catalogue of solar and lunar eclipses.",
         .outHelp = "Catalogue file to write",
         .firstYear = firstCatalogueYear,
         .lastYear = lastCatalogueYear,
         .write = [](const std::string& file, int from, int to) {
             writeCatalogue(file, from, to);
         }});
}
