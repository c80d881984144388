#pragma once

#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <iostream>
#include <string>

namespace lunoval::tools {

// The command line the data generators share: `--out` and a range of years they cover.
struct GeneratorCommand {
    const char* name;
    const char* description;
    const char* outHelp;
    int firstYear;
    int lastYear;
    std::function<void(const std::string& out, int firstYear, int lastYear)> write;
};

inline int runGenerator(int argc, char** argv, const GeneratorCommand& command) {
    CLI::App app{command.description, command.name};
    std::string out;
    int firstYear = command.firstYear;
    int lastYear = command.lastYear;
    const CLI::Range years(command.firstYear, command.lastYear);
    app.add_option("--out", out, command.outHelp)->required();
    app.add_option("--from", firstYear, "First year")->check(years);
    app.add_option("--to", lastYear, "Last year")->check(years);
    app.callback([&] {
        if (firstYear > lastYear) throw CLI::ValidationError("--from", "is after --to");
    });
    try {
        app.parse(argc, argv);
        command.write(out, firstYear, lastYear);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;  // bad arguments exit with 2, as lunoval does
    } catch (const std::exception& error) {
        std::cerr << command.name << ": " << error.what() << '\n';
        return 1;
    }
    return 0;
}

}  // namespace lunoval::tools
