#include "film/inspect/FilmReport.h"

#include "film/optics/FilmConstants.h"
#include "film/optics/FilmSpectralModel.h"
#include "platform/json/Writer.h"

#include <iomanip>
#include <sstream>

namespace lumisort::film {
namespace {

constexpr std::array greyExposures{0.0, 0.01, 0.045, 0.09, 0.18, 0.36, 0.72, 1.0, 2.0};

template <class Space>
void write(json::Writer& out, const Triple<Space>& numbers) {
    out.beginArray();
    for (const double number : numbers.v) out.number(number);
    out.endArray();
}

template <class Space>
std::string row(const Triple<Space>& numbers, int decimals) {
    std::ostringstream line;
    line << std::fixed << std::setprecision(decimals);
    for (const double number : numbers.v) line << std::setw(decimals + 5) << number;
    return line.str();
}

void describeProfile(std::ostream& out, const StockProfile& profile) {
    out << "\nWhere the film's numbers come from (" << profile.id << ")\n";
    for (const MaterialProvenance& entry : profile.provenance) {
        out << "  " << entry.component << ": " << storedName(entry.evidence);
        if (entry.source) out << ", " << *entry.source;
        if (entry.sourcePage) out << ", page " << *entry.sourcePage;
        out << "\n    " << entry.conditions << "\n    " << entry.uncertainty << "\n";
    }
}

} // namespace

std::string inspectJson(FilmStock stock, FilmPaper paper) {
    const FilmSpectralModel model(stock, paper);
    return json::toText([&](json::Writer& out) {
               const auto triple = [&](std::string_view key, const auto& value) {
                   write(out.key(key), value);
               };
               out.beginObject();
               out.key("stock").text(storedName(stock));
               out.key("paper").text(storedName(paper));
               if (model.stock.isMeasured()) {
                   out.key("neutralLogExposure").number(model.stock.neutralLogExposure);
               }
               out.key("paperCalibration").number(model.paperCalibration);
               triple("neutralTransmission", model.neutralTransmission);
               out.key("exposureRows").beginArray();
               for (const Vector3& weights : model.exposureRows.matrix.rows) write(out, weights);
               out.endArray();
               triple("layerRanges", model.layerRanges());
               triple("reflectionCubeMinimums", model.reflectionCubeMinimums());
               triple("reflectionCubeRanges", model.reflectionCubeRanges());
               out.key("greyScale").beginArray();
               for (const double exposure : greyExposures) {
                   out.beginObject();
                   out.key("exposure").number(exposure);
                   triple("layerDensity", model.layerDensity(Exposure::filled(exposure)));
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
    const auto line = [&](const char* name, const auto& v) {
        out << "  " << std::left << std::setw(26) << name << std::right << row(v, 4) << "\n";
    };
    const auto curve = [&](const SigmoidCurve& sigmoid) {
        out << "  curve                     " << sigmoid.minimum << " to " << sigmoid.minimum + sigmoid.range
            << ", slope " << sigmoid.slope << "\n";
    };
    out << "Film\n";
    line("red layer sees RGB", model.exposureRows.matrix[0]);
    line("green layer sees RGB", model.exposureRows.matrix[1]);
    line("blue layer sees RGB", model.exposureRows.matrix[2]);
    line("density range", model.layerRanges());
    line("mid-grey density", model.layerDensity(Exposure::filled(midGreyExposure)));
    line("mid-grey transmission", model.neutralTransmission);
    if (model.stock.isoSpeed) out << "  speed                     ISO " << *model.stock.isoSpeed << "\n";
    if (model.stock.isMeasured()) {
        out << "  mid-grey log exposure     " << model.stock.neutralLogExposure << " (log10 lux s)\n";
    }
    if (const auto* sigmoid = std::get_if<SigmoidCurve>(&model.stock.layers[0].characteristic)) {
        curve(*sigmoid);
        out << "  grain strength            " << model.stock.grain.densityAmount << "\n";
    }
    out << "Paper\n";
    curve(model.paper.curve);
    out << "  calibration               " << model.paperCalibration << " (log10 dose)\n";
    line("display RGB from", model.reflectionCubeMinimums());
    line("display RGB to", model.reflectionCubeMinimums() + model.reflectionCubeRanges());

    out << "\nGrey scale: density above base by relative exposure (0.18 is mid-grey)\n";
    for (const double exposure : greyExposures) {
        out << "  " << std::setw(6) << std::setprecision(3) << exposure << std::setprecision(4)
            << std::string(20, ' ') << row(model.layerDensity(Exposure::filled(exposure)), 4) << "\n";
    }
    if (model.stock.isMeasured()) describeProfile(out, model.stock);
    return out.str();
}

} // namespace lumisort::film
