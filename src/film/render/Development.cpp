#include "film/render/Development.h"

#include "film/render/GaussianKernel.h"
#include "film/render/Pipeline.h"

#include <blur_rows.h>
#include <coupled_development.h>
#include <development.h>
#include <off_neutral_density.h>

namespace lumisort::film {

namespace {

bool couples(const FilmRecipe& recipe) {
    return recipe.settings.colorSeparation > 0 && recipe.optics->model.stock.coupling;
}

/// Inter-layer inhibition as one picture has it.
struct Coupling {
    explicit Coupling(const FilmRecipe& recipe)
        : diffusion(recipe.pixelsPerMicrometre() *
                    recipe.optics->model.stock.coupling->diffusionSigmaMicrometres) {
        for (const auto& row : recipe.optics->model.stock.coupling->inhibition.rows)
            for (const double factor : row.v)
                inhibition.push_back(static_cast<float>(factor * recipe.settings.colorSeparation *
                                                        recipe.optics->curves.scale));
    }

    GaussianKernel diffusion;
    /// Row by row of the inhibited layer, for densities as the curves hold them.
    std::vector<float> inhibition;
};

PipelineBuffer curvesOf(const FilmOptics& optics) {
    return tableBuffer(optics.curves.texels, 4);
}

void developAlone(const FilmOptics& optics, const PlaneView& in, const PlaneView& out) {
    auto exposure = inputBuffer(in), curves = curvesOf(optics), density = outputBuffer(out);
    checkPipeline(::development(exposure, curves, density));
}

void developCoupled(const FilmOptics& optics, const Coupling& coupling, const PlaneView& in,
                    const PlaneView& out, StageScratch& scratch) {
    auto& [residual, rows, unused] = scratch.planes;
    residual.reshape(in.region);
    rows.reshape({out.region.x, in.region.y, out.region.width, in.region.height});
    auto exposure = inputBuffer(in), curves = curvesOf(optics), difference = outputBuffer(residual.view()),
         weights = tableBuffer(coupling.diffusion.weights), spread = inputBuffer(rows.view()),
         inhibition = tableBuffer(coupling.inhibition, 3), density = outputBuffer(out);
    checkPipeline(::off_neutral_density(exposure, curves, difference));
    for (int layer = 0; layer < 3; ++layer) {
        auto plane = inputPlane(residual.view(), layer), blurred = outputPlane(rows.view(), layer);
        checkPipeline(
            ::blur_rows(plane, weights, coupling.diffusion.radius, in.region.x, in.region.width, blurred));
    }
    checkPipeline(::coupled_development(exposure, spread, weights, coupling.diffusion.radius, in.region.y,
                                        in.region.height, curves, inhibition, density));
}

} // namespace

int developmentBorder(const FilmRecipe& recipe) {
    return couples(recipe) ? Coupling(recipe).diffusion.radius : 0;
}

StageRendering prepareDevelopment(const FilmRecipe& recipe) {
    if (!couples(recipe))
        return [optics = recipe.optics](const PlaneView& in, const PlaneView& out, StageScratch&) {
            developAlone(*optics, in, out);
        };
    return [optics = recipe.optics, coupling = Coupling(recipe)](const PlaneView& in, const PlaneView& out,
                                                                 StageScratch& scratch) {
        developCoupled(*optics, coupling, in, out, scratch);
    };
}

} // namespace lumisort::film
