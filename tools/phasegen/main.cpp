#include "generator_main.hpp"
#include "phasegen/year_table.hpp"

int main(int argc, char** argv) {
    using namespace lunoval::phasegen;
    return lunoval::tools::runGenerator(
        argc, argv,
        {.name = "lunoval-phasegen",
         .description = "Writes the principal moon phase tables, one property list per year.",
         .outHelp = "Folder that receives <year>.plist",
         .firstYear = firstTableYear,
         .lastYear = lastTableYear,
         .write = [](const std::string& folder, int from, int to) {
             writeYearTables(folder, from, to);
         }});
}
