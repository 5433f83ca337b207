#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Names.h"
#include "app/commandline/Text.h"
#include "film/inspect/CubeText.h"
#include "film/inspect/FilmPlot.h"
#include "film/inspect/FilmReport.h"
#include "platform/files/AtomicFile.h"

#include <CLI/CLI.hpp>

namespace lumisort::app {

namespace {

struct InspectOptions {
    std::string stock;
    std::string paper;
    std::string plot;
    std::string cube;
    std::string out;
    bool json = false;
};

void writeText(const std::string& argument, const std::string& text, Dependencies& deps) {
    const auto file = fileArgument(argument);
    files::replaceFile(files::FileSystem::real(), file.path(), text);
    deps.notes << "Written: " << printable(file.path()) << '\n';
}

ExitStatus inspect(const InspectOptions& options, Dependencies& deps) {
    const auto stock = film::filmStockNames.find(options.stock).value();
    const auto paper = film::filmPaperNames.find(options.paper).value();
    deps.out << (options.json ? film::inspectJson(stock, paper) : film::inspectText(stock, paper));
    if (!options.plot.empty()) writeText(options.plot, film::plotSvg(stock, paper), deps);
    if (!options.cube.empty()) {
        const auto cube = film::inspectedCubeNames.find(options.cube).value();
        writeText(options.out, film::cubeText(stock, paper, cube, deps.stop), deps);
    }
    return ExitStatus::done;
}

} // namespace

void addFilmInspectCommand(CLI::App& film, Command& chosen) {
    auto* command = film.add_subcommand("inspect", "Show the numbers of one film on one paper");
    const auto options = std::make_shared<InspectOptions>();
    command->add_option("--stock", options->stock, "The film")
        ->required()
        ->check(CLI::IsMember(namesOf(film::allFilmStocks)));
    command->add_option("--paper", options->paper, "The paper")
        ->required()
        ->check(CLI::IsMember(namesOf(film::allFilmPapers)));
    command->add_flag("--json", options->json, "Print JSON");
    command->add_option("--plot", options->plot, "Draw the curves and spectra into this SVG file");
    auto* cube = command->add_option("--cube", options->cube, "Write this lookup cube as a .cube file")
                     ->check(CLI::IsMember(namesOf(film::allInspectedCubes)));
    auto* out = command->add_option("--out", options->out, "The .cube file");
    cube->needs(out);
    out->needs(cube);
    command->callback(
        [options, &chosen] { chosen = [options](Dependencies& deps) { return inspect(*options, deps); }; });
}

} // namespace lumisort::app
