#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Names.h"
#include "app/commandline/Text.h"
#include "film/edits/FilmEditFile.h"
#include "film/render/FilmRenderEngine.h"
#include "film/render/FilmRenderError.h"
#include "library/LibraryLocation.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/FileError.h"

#include <CLI/CLI.hpp>

#include <QBuffer>
#include <QImage>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
#include <set>
#include <stdexcept>

namespace lumisort::app {

namespace {

struct FilmOptions {
    std::vector<std::string> photos;
    std::string out;
    std::string folder;
    std::string preview;
    std::optional<std::string> stock, paper, format;
    std::optional<double> exposure, printExposure, grain, halation, colorSeparation;
    bool fromEdits = false;
    bool rendered = false;
    bool timings = false;
};

/// One photo and where its print goes.
struct Job {
    files::FileUrl photo;
    std::optional<files::FileUrl> destination;
};

/// The stored adjustments or those of a new edit, with what the command line says instead.
film::FilmSettings settingsFor(const FilmOptions& options, const files::FileUrl& photo, Dependencies& deps) {
    film::FilmSettings settings;
    if (options.fromEdits) {
        film::FilmEditFile edits(files::FileSystem::real(), film::filmEditsOf(library::libraryLocation()));
        const auto stored = edits.load(photo);
        if (stored.persistenceWarning) deps.notes << *stored.persistenceWarning << '\n';
        settings = stored.settings;
    }
    if (options.stock) settings.stock = film::filmStockNames.find(*options.stock).value();
    if (options.paper) settings.paper = film::filmPaperNames.find(*options.paper).value();
    if (options.format) settings.format = film::filmFormatNames.find(*options.format).value();
    const auto take = [](const std::optional<double>& given, double& setting) {
        setting = given.value_or(setting);
    };
    take(options.exposure, settings.exposure);
    take(options.printExposure, settings.printExposure);
    take(options.grain, settings.grain);
    take(options.halation, settings.halation);
    take(options.colorSeparation, settings.colorSeparation);
    return settings;
}

/// Photos whose names differ only in what a TIFF's name leaves out get a number: no print takes another's
/// place.
std::vector<Job> jobsOf(const FilmOptions& options) {
    std::vector<Job> jobs;
    if (!options.folder.empty()) folderArgument(options.folder, "write into");
    std::set<std::string> taken;
    for (const auto& photo : options.photos) {
        Job job{fileArgument(photo), {}};
        if (!options.out.empty()) job.destination = fileArgument(options.out);
        if (!options.folder.empty()) {
            const std::string stem(job.photo.stem());
            std::string name = stem + ".tif";
            for (int number = 2; !taken.insert(name).second; ++number)
                name = stem + "-" + std::to_string(number) + ".tif";
            job.destination = fileArgument(options.folder).child(name);
        }
        jobs.push_back(std::move(job));
    }
    return jobs;
}

void writePng(const images::Bitmap& bitmap, const files::FileUrl& file) {
    const QImage image(bitmap.rgba().data(), bitmap.width(), bitmap.height(), 4 * bitmap.width(),
                       QImage::Format_RGBA8888);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        throw std::runtime_error("The preview could not be encoded as PNG.");
    files::replaceFile(files::FileSystem::real(), file.path(),
                       std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

class Stopwatch {
public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void printTimings(const film::FilmRenderEngine& engine, double seconds, Dependencies& deps) {
    std::array<char, 80> line{};
    for (std::size_t i = 0; i < film::filmStages().size(); ++i) {
        std::snprintf(line.data(), line.size(), "%-12s %8.3f s of processor time\n",
                      film::filmStages()[i].name.data(), static_cast<double>(engine.stageTimes()[i]) * 1e-9);
        deps.notes << line.data();
    }
    std::snprintf(line.data(), line.size(), "%-12s %8.3f s\n", "in all", seconds);
    deps.notes << line.data();
}

ExitStatus render(const FilmOptions& options, Dependencies& deps) {
    const Stopwatch stopwatch;
    const auto jobs = jobsOf(options);
    film::FilmRenderEngine engine(options.rendered ? film::FilmInputs::renderedAsWell
                                                   : film::FilmInputs::raw);
    bool failed = false;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        const auto& [photo, destination] = jobs[i];
        const auto name = printable(photo.name());
        const auto show = [&](double share) {
            deps.progress.show((static_cast<double>(i) + share) / static_cast<double>(jobs.size()), name);
        };
        try {
            show(0);
            const auto settings = settingsFor(options, photo, deps);
            if (destination) {
                engine.exportPhoto(photo, settings, *destination, show, deps.stop);
                deps.progress.clear();
                deps.out << printable(destination->path()) << '\n';
            }
            if (!options.preview.empty()) {
                const auto file = fileArgument(options.preview);
                writePng(engine.preview(photo, settings, deps.stop).film, file);
                deps.progress.clear();
                deps.out << printable(file.path()) << '\n';
            }
        } catch (const film::FilmRenderError& error) {
            deps.progress.clear();
            deps.notes << printable(photo.path()) << ": " << error.what() << '\n';
            failed = true;
        } catch (const files::FileError& error) {
            deps.progress.clear();
            deps.notes << error.what() << '\n';
            failed = true;
        }
    }
    deps.progress.clear();
    if (options.timings) printTimings(engine, stopwatch.seconds(), deps);
    return failed ? jobs.size() == 1 ? ExitStatus::failed : ExitStatus::doneWithFailures : ExitStatus::done;
}

void checkOutputs(const FilmOptions& options) {
    if (options.photos.empty()) throw CLI::RequiredError("PHOTO");
    if (options.out.empty() && options.folder.empty() && options.preview.empty())
        throw CLI::RequiredError("--out, --out-dir or --preview");
    if (options.photos.size() > 1 && !(options.out.empty() && options.preview.empty()))
        throw CLI::ValidationError("Several photos need --out-dir alone.");
}

} // namespace

void addFilmCommand(CLI::App& program, Command& chosen) {
    auto* command =
        program.add_subcommand("film", "Print camera RAW photos on a simulated colour-negative film");
    addFilmInspectCommand(*command, chosen);
    command->require_subcommand(0, 1);
    const auto options = std::make_shared<FilmOptions>();
    command->add_option("photos", options->photos, "The photos");
    auto* out = command->add_option("--out", options->out, "The 16-bit TIFF of one photo");
    command->add_option("--out-dir", options->folder, "The folder that gets a TIFF of each photo")
        ->excludes(out);
    command->add_option("--preview", options->preview,
                        "A PNG of at most 1600 pixels, replaced where it exists");
    command->add_option("--stock", options->stock, "The film")
        ->check(CLI::IsMember(namesOf(film::allFilmStocks)));
    command->add_option("--paper", options->paper, "The paper")
        ->check(CLI::IsMember(namesOf(film::allFilmPapers)));
    command->add_option("--format", options->format, "The negative's size")
        ->check(CLI::IsMember(namesOf(film::allFilmFormats)));
    command->add_option("--exposure", options->exposure, "Of the camera, in stops")
        ->check(CLI::Range(-5.0, 5.0));
    command->add_option("--print-exposure", options->printExposure, "Of the print, in stops")
        ->check(CLI::Range(-5.0, 5.0));
    command->add_option("--grain", options->grain, "Amount, 0 to 1")->check(CLI::Range(0.0, 1.0));
    command->add_option("--halation", options->halation, "Amount, 0 to 1")->check(CLI::Range(0.0, 1.0));
    command->add_option("--color-separation", options->colorSeparation, "Amount, 0 to 1")
        ->check(CLI::Range(0.0, 1.0));
    command->add_flag("--from-edits", options->fromEdits, "Start from each photo's stored adjustments");
    command->add_flag("--rendered", options->rendered, "Accept photos that are no camera RAW");
    command->add_flag("--timings", options->timings, "Print the time of each stage");
    command->callback([command, options, &chosen] {
        if (!command->get_subcommands().empty()) return;
        checkOutputs(*options);
        chosen = [options](Dependencies& deps) { return render(*options, deps); };
    });
}

} // namespace lumisort::app
