#include "film_by_hand.h"

#pragma GCC optimize("O3")
#pragma GCC target("avx2,fma")

#include <immintrin.h>

#include <cmath>

namespace lumisort::film::byhand {

namespace {

using V = __m256;

V all(float v) {
    return _mm256_set1_ps(v);
}

V clamped(V v, float low, float high) {
    return _mm256_min_ps(_mm256_max_ps(v, all(low)), all(high));
}

/// Natural logarithm, polynomial of degree 8 on the mantissa about 1 (as in the Cephes library): 2 ulp.
V log8(V x) {
    const __m256i bits = _mm256_castps_si256(x);
    V exponent = _mm256_cvtepi32_ps(_mm256_sub_epi32(_mm256_srli_epi32(bits, 23), _mm256_set1_epi32(126)));
    V m = _mm256_or_ps(_mm256_and_ps(x, _mm256_castsi256_ps(_mm256_set1_epi32(0x007fffff))), all(0.5f));
    const V small = _mm256_cmp_ps(m, all(0.707106781f), _CMP_LT_OS);
    exponent = _mm256_sub_ps(exponent, _mm256_and_ps(small, all(1)));
    m = _mm256_add_ps(_mm256_sub_ps(m, all(1)), _mm256_and_ps(small, m));
    V p = all(7.0376836292e-2f);
    for (const float c : {-1.1514610310e-1f, 1.1676998740e-1f, -1.2420140846e-1f, 1.4249322787e-1f,
                          -1.6668057665e-1f, 2.0000714765e-1f, -2.4999993993e-1f, 3.3333331174e-1f})
        p = _mm256_fmadd_ps(p, m, all(c));
    const V square = _mm256_mul_ps(m, m);
    V y = _mm256_mul_ps(_mm256_mul_ps(p, m), square);
    y = _mm256_fmadd_ps(exponent, all(-2.12194440e-4f), y);
    y = _mm256_fnmadd_ps(all(0.5f), square, y);
    return _mm256_fmadd_ps(exponent, all(0.693359375f), _mm256_add_ps(m, y));
}

/// Exponential, polynomial of degree 6 (as in the Cephes library): 2 ulp.
V exp8(V x) {
    x = clamped(x, -87, 88);
    const V n =
        _mm256_round_ps(_mm256_mul_ps(x, all(1.44269504f)), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    x = _mm256_fnmadd_ps(n, all(0.693359375f), x);
    x = _mm256_fnmadd_ps(n, all(-2.12194440e-4f), x);
    V p = all(1.9875691500e-4f);
    for (const float c :
         {1.3981999507e-3f, 8.3334519073e-3f, 4.1665795894e-2f, 1.6666665459e-1f, 5.0000001201e-1f})
        p = _mm256_fmadd_ps(p, x, all(c));
    p = _mm256_add_ps(_mm256_fmadd_ps(p, _mm256_mul_ps(x, x), x), all(1));
    const __m256i power =
        _mm256_slli_epi32(_mm256_add_epi32(_mm256_cvtps_epi32(n), _mm256_set1_epi32(127)), 23);
    return _mm256_mul_ps(p, _mm256_castsi256_ps(power));
}

struct Axis {
    __m256i low;
    V weight;
};

Axis axis(V value, int nodes) {
    const V position = _mm256_mul_ps(clamped(value, 0, 1), all(static_cast<float>(nodes - 1)));
    const __m256i low = _mm256_min_epi32(_mm256_cvttps_epi32(position), _mm256_set1_epi32(nodes - 2));
    return {low, _mm256_sub_ps(position, _mm256_cvtepi32_ps(low))};
}

V mix(V a, V b, V weight) {
    return _mm256_fmadd_ps(_mm256_sub_ps(b, a), weight, a);
}

struct Colour {
    V c[3];
};

Colour lookUp(const FilmLookupCube& cube, const Colour& in) {
    const int n = cube.dimension();
    const auto r = axis(in.c[0], n), g = axis(in.c[1], n), b = axis(in.c[2], n);
    const __m256i size = _mm256_set1_epi32(n);
    __m256i at = _mm256_add_epi32(
        _mm256_mullo_epi32(_mm256_add_epi32(_mm256_mullo_epi32(b.low, size), g.low), size), r.low);
    at = _mm256_slli_epi32(at, 2);
    Colour out;
    for (int c = 0; c < 3; ++c) {
        const float* table = cube.data().data() + c;
        const auto node = [&](int offset) { return _mm256_i32gather_ps(table + 4 * offset, at, 4); };
        const auto row = [&](int offset) { return mix(node(offset), node(offset + 1), r.weight); };
        const auto slice = [&](int offset) { return mix(row(offset), row(offset + n), g.weight); };
        out.c[c] = mix(slice(0), slice(n * n), b.weight);
    }
    return out;
}

V develop(const DensityCurves& curves, int layer, V exposure) {
    const V log = _mm256_mul_ps(log8(_mm256_mul_ps(_mm256_max_ps(exposure, all(1e-12f)), all(1 / 0.18f))),
                                all(0.4342944819f));
    const auto at = axis(_mm256_mul_ps(_mm256_add_ps(log, all(6)), all(1.0f / 9)), DensityCurves::entries);
    const float* table = curves.texels.data() + layer;
    const __m256i index = _mm256_slli_epi32(at.low, 2);
    return mix(_mm256_i32gather_ps(table, index, 4), _mm256_i32gather_ps(table + 4, index, 4), at.weight);
}

/// Sine and cosine of angles up to a few thousand radians: reduction to ±π/4 in three steps (Cephes).
void sinCos(V x, V& sine, V& cosine) {
    const V quadrant =
        _mm256_round_ps(_mm256_mul_ps(x, all(0.636619772f)), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    x = _mm256_fnmadd_ps(quadrant, all(1.5703125f), x);
    x = _mm256_fnmadd_ps(quadrant, all(4.837512969970703125e-4f), x);
    x = _mm256_fnmadd_ps(quadrant, all(7.549789948768648e-8f), x);
    const __m256i q = _mm256_cvtps_epi32(quadrant);
    const V square = _mm256_mul_ps(x, x);
    V s = _mm256_fmadd_ps(all(-1.9515295891e-4f), square, all(8.3321608736e-3f));
    s = _mm256_fmadd_ps(s, square, all(-1.6666654611e-1f));
    s = _mm256_fmadd_ps(_mm256_mul_ps(s, square), x, x);
    V c = _mm256_fmadd_ps(all(2.443315711809948e-5f), square, all(-1.388731625493765e-3f));
    c = _mm256_fmadd_ps(c, square, all(4.166664568298827e-2f));
    c = _mm256_fmadd_ps(_mm256_mul_ps(c, square), square, _mm256_fnmadd_ps(all(0.5f), square, all(1)));
    const V swap = _mm256_castsi256_ps(_mm256_slli_epi32(q, 31));
    const V sineSign = _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_srli_epi32(q, 1), 31));
    const V cosineSign = _mm256_castsi256_ps(
        _mm256_slli_epi32(_mm256_srli_epi32(_mm256_add_epi32(q, _mm256_set1_epi32(1)), 1), 31));
    sine = _mm256_xor_ps(_mm256_blendv_ps(s, c, swap), sineSign);
    cosine = _mm256_xor_ps(_mm256_blendv_ps(c, s, swap), cosineSign);
}

} // namespace

void pointwise(const FilmRecipe& recipe, const images::LinearImage& scene, images::LinearImage& light) {
    const auto& optics = *recipe.optics;
    const auto& curve = optics.model.paper.curve;
    const auto dose = optics.model.printCalibration(recipe.settings.printExposure);
    const V gain = all(static_cast<float>(std::exp2(recipe.settings.exposure) / optics.exposure.factor));
    for (int y = 0; y < scene.height(); ++y)
        for (int x = 0; x < scene.width(); x += 8) {
            Colour v;
            for (int c = 0; c < 3; ++c)
                v.c[c] = _mm256_max_ps(_mm256_loadu_ps(scene.plane(c).row(y) + x), all(0));
            const V peak = _mm256_max_ps(v.c[0], _mm256_max_ps(v.c[1], v.c[2]));
            const V divisor = _mm256_div_ps(all(1), _mm256_max_ps(peak, all(1e-12f)));
            for (V& c : v.c) c = _mm256_mul_ps(c, divisor);
            v = lookUp(optics.exposure.cube, v);
            for (int c = 0; c < 3; ++c)
                v.c[c] = develop(optics.curves, c, _mm256_mul_ps(v.c[c], _mm256_mul_ps(peak, gain)));
            v = lookUp(optics.negative.cube, v);
            for (std::size_t c = 0; c < 3; ++c) {
                const V logDose = _mm256_fnmadd_ps(v.c[c], all(3.2f), all(static_cast<float>(dose[c])));
                const V e = exp8(_mm256_mul_ps(logDose, all(static_cast<float>(-curve.slope))));
                const V density = _mm256_add_ps(
                    _mm256_div_ps(all(static_cast<float>(curve.range)), _mm256_add_ps(all(1), e)),
                    all(static_cast<float>(curve.minimum)));
                v.c[c] = clamped(_mm256_mul_ps(density, all(1 / 3.2f)), 0, 1);
            }
            v = lookUp(optics.paper.cube, v);
            for (int c = 0; c < 3; ++c) {
                const auto k = static_cast<std::size_t>(c);
                _mm256_storeu_ps(light.plane(c).row(y) + x,
                                 _mm256_fmadd_ps(v.c[c], all(static_cast<float>(optics.paper.ranges[k])),
                                                 all(static_cast<float>(optics.paper.minimums[k]))));
            }
        }
}

double planeWaves(int waves, int width, int height) {
    V total = all(0);
    const V columns = _mm256_setr_ps(0, 1, 2, 3, 4, 5, 6, 7);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; x += 8)
            for (int layer = 0; layer < 3; ++layer) {
                V noise = all(0);
                const V position = _mm256_add_ps(columns, all(static_cast<float>(x)));
                for (int i = 0; i < waves; ++i) {
                    const float fx = 0.01f * static_cast<float>(i + layer),
                                fy = 0.013f * static_cast<float>(i - layer);
                    V sine, cosine;
                    sinCos(_mm256_fmadd_ps(position, all(fx), all(fy * static_cast<float>(y))), sine, cosine);
                    noise = _mm256_fmadd_ps(all(fx), cosine, _mm256_fmadd_ps(all(fy), sine, noise));
                }
                total = _mm256_add_ps(total, noise);
            }
    alignas(32) float lanes[8];
    _mm256_store_ps(lanes, total);
    double sum = 0;
    for (const float lane : lanes) sum += lane;
    return sum;
}

} // namespace lumisort::film::byhand
