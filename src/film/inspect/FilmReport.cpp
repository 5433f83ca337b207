#include "film/inspect/FilmInspection.h"
#include "film/optics/FilmSpectralModel.h"
#include "film/optics/GenericMaterials.h"
#include "platform/json/Writer.h"

#include <iomanip>
#include <sstream>

namespace lumisort::film {
namespace {

constexpr std::array greyExposures{0.0, 0.01, 0.045, 0.09, 0.18, 0.36, 0.72, 1.0, 2.0};

void write(json::Writer& out, const Vector3& vector) {
    out.beginArray();
    for (const double number : vector.v) out.number(number);
    out.endArray();
}

std::string row(const Vector3& v, int decimals) {
    std::ostringstream line;
    line << std::fixed << std::setprecision(decimals);
    for (const double number : v.v) line << std::setw(decimals + 5) << number;
    return line.str();
}

void describeProfile(std::ostream& out, const FilmMaterialProfile& profile) {
    out << "\nWhere the film's numbers come from (" << profile.id << ")\n";
    for (const MaterialProvenance& entry : profile.provenance) {
        out << "  " << entry.component << ": " << rawValue(entry.evidence);
        if (entry.sourceURL) out << ", " << *entry.sourceURL;
        if (entry.sourcePage) out << ", page " << *entry.sourcePage;
        out << "\n    " << entry.conditions << "\n    " << entry.uncertainty << "\n";
    }
}

} // namespace

std::string inspectJson(FilmStock stock, FilmPaper paper) {
    const FilmSpectralModel model(stock, paper);
    return json::toText([&](json::Writer& out) {
               const auto vector = [&](std::string_view key, const Vector3& value) {
                   write(out.key(key), value);
               };
               out.beginObject();
               out.key("stock").text(rawValue(stock));
               out.key("paper").text(rawValue(paper));
               if (model.material) out.key("neutralLogExposure").number(model.material->neutralLogExposure);
               out.key("paperCalibration").number(model.paperCalibration);
               vector("neutralTransmission", model.neutralTransmission);
               out.key("exposureRows").beginArray();
               for (const Vector3& weights : model.exposureRows) write(out, weights);
               out.endArray();
               vector("layerRanges", model.layerRanges());
               vector("reflectionCubeMinimums", model.reflectionCubeMinimums());
               vector("reflectionCubeRanges", model.reflectionCubeRanges());
               out.key("greyScale").beginArray();
               for (const double exposure : greyExposures) {
                   out.beginObject();
                   out.key("exposure").number(exposure);
                   vector("layerDensity", model.layerDensity(Vector3::filled(exposure)));
                   out.endObject();
               }
               out.endArray();
               out.endObject();
           }) +
           "\n";
}

std::string inspectText(FilmStock stock, FilmPaper paper) {
    const FilmSpectralModel model(stock, paper);
    std::ostringstream out;
    out << std::fixed << std::setprecision(4);
    out << title(stock) << " on " << title(paper) << " paper\n\n";
    out << "                                   red    green     blue\n";
    const auto line = [&](const char* name, const Vector3& v) {
        out << "  " << std::left << std::setw(26) << name << std::right << row(v, 4) << "\n";
    };
    out << "Film\n";
    line("red layer sees RGB", model.exposureRows[0]);
    line("green layer sees RGB", model.exposureRows[1]);
    line("blue layer sees RGB", model.exposureRows[2]);
    line("density range", model.layerRanges());
    line("mid-grey density", model.layerDensity(Vector3::filled(midGreyExposure)));
    line("mid-grey transmission", model.neutralTransmission);
    if (model.material) {
        out << "  speed                     ISO " << model.material->isoSpeed << "\n";
        out << "  mid-grey log exposure     " << model.material->neutralLogExposure << " (log10 lux s)\n";
    } else {
        out << "  curve                     " << model.filmMinimum << " to "
            << model.filmMinimum + model.filmRange << ", slope " << model.filmSlope << "\n";
        out << "  grain strength            " << model.grainDensity << "\n";
    }
    out << "Paper\n";
    out << "  curve                     " << model.paperMinimum << " to "
        << model.paperMinimum + model.paperRange << ", slope " << model.paperSlope << "\n";
    out << "  calibration               " << model.paperCalibration << " (log10 dose)\n";
    line("display RGB from", model.reflectionCubeMinimums());
    line("display RGB to", model.reflectionCubeMinimums() + model.reflectionCubeRanges());

    out << "\nGrey scale: density above base by relative exposure (0.18 is mid-grey)\n";
    for (const double exposure : greyExposures) {
        out << "  " << std::setw(6) << std::setprecision(3) << exposure << std::setprecision(4)
            << std::string(20, ' ') << row(model.layerDensity(Vector3::filled(exposure)), 4) << "\n";
    }
    if (model.material) describeProfile(out, *model.material);
    return out.str();
}

} // namespace lumisort::film
