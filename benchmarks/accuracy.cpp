// How well near-duplicate matching tells copies and edits of a photo from other photos. Prints three Markdown tables:
// recall for labelled pairs, recall for variants made here of photos outside the labels, and what was grouped that
// does not belong together.
//
//   benchmark-accuracy CORPUS      the folder of real photos with its groups/groups.csv

#include "library/LibraryScanner.h"
#include "platform/tasks/WorkerPool.h"
#include "similarity/Fingerprinting.h"
#include "similarity/NearDuplicateScan.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <vips/vips.h>

using namespace lumisort;
using namespace lumisort::similarity;
namespace fs = std::filesystem;

namespace {

struct Labelled {
    std::string path, group, relation;
    std::optional<VisualFingerprint> fingerprint;
};

/// Found and all, by level.
struct Score {
    std::array<int, 3> found{};
    int total = 0;
    std::vector<std::string> missed; ///< at balanced
};
using Scores = std::map<std::string, Score>;

std::optional<VisualFingerprint> tryFingerprint(const std::string& path) {
    try {
        return SimilarityEngine::fingerprint(files::FileUrl::fromPath(path));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::vector<Labelled> readLabels(const fs::path& corpus) {
    std::vector<Labelled> labels;
    std::ifstream file(corpus / "groups" / "groups.csv");
    std::string line;
    std::getline(file, line); // heading
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        Labelled row;
        std::getline(fields, row.path, ',');
        std::getline(fields, row.group, ',');
        std::getline(fields, row.relation, ',');
        row.fingerprint = tryFingerprint((corpus / row.path).string());
        if (!row.fingerprint) std::printf("not a photo: %s\n", row.path.c_str());
        labels.push_back(std::move(row));
    }
    return labels;
}

void count(Scores& scores, const std::string& relation, const VisualFingerprint& a, const VisualFingerprint& b,
           const std::string& name) {
    Score& score = scores[relation];
    ++score.total;
    for (const auto level : allSimilarityLevels)
        if (a.matchDistance(b, level))
            ++score.found[static_cast<std::size_t>(level)];
        else if (level == SimilarityLevel::balanced)
            score.missed.push_back(name);
}

void print(const char* title, const Scores& scores) {
    std::printf("\n| %s | pairs | strict | balanced | loose |\n|---|---|---|---|---|\n", title);
    for (const auto& [relation, score] : scores) {
        std::printf("| %s | %d |", relation.c_str(), score.total);
        for (const int found : score.found) std::printf(" %.1f %% |", 100.0 * found / score.total);
        std::printf("\n");
    }
    for (const auto& [relation, score] : scores)
        for (const auto& name : score.missed) std::printf("missed at balanced: %s: %s\n", relation.c_str(), name.c_str());
}

bool isBase(const std::string& relation) {
    static const std::set<std::string> bases{"original", "exact", "exact-copy", "metadata-only", "same-source"};
    return bases.contains(relation);
}

/// Pairs of one group of which one at least is the photo as it was; groups without such a one (orientations, bursts,
/// exposures) pair all.
Scores scoreLabels(const std::vector<Labelled>& labels) {
    Scores scores;
    std::set<std::string> withBase;
    for (const auto& row : labels)
        if (isBase(row.relation)) withBase.insert(row.group);
    for (std::size_t i = 0; i < labels.size(); ++i)
        for (std::size_t j = i + 1; j < labels.size(); ++j) {
            const auto &a = labels[i], &b = labels[j];
            if (a.group != b.group || !a.fingerprint || !b.fingerprint) continue;
            if (withBase.contains(a.group) && !isBase(a.relation) && !isBase(b.relation)) continue;
            const auto& relation = isBase(a.relation) ? b.relation : a.relation;
            count(scores, relation, *b.fingerprint, *a.fingerprint, a.path + " " + b.path);
        }
    return scores;
}

using Image = std::shared_ptr<VipsImage>;

Image made(int failed, VipsImage* image) {
    if (failed) {
        std::string reason = vips_error_buffer();
        vips_error_clear();
        throw std::runtime_error(reason);
    }
    return {image, [](VipsImage* held) { g_object_unref(held); }};
}

template <class Make> Image make(Make operation) {
    VipsImage* out = nullptr;
    const int failed = operation(&out);
    return made(failed, out);
}

struct Variant {
    const char* relation;
    std::function<Image(const Image&)> change;
    int quality = 90;
};

Image scaled(const Image& in, double factor) {
    return make([&](VipsImage** out) { return vips_resize(in.get(), out, factor, nullptr); });
}
Image turned(const Image& in, VipsAngle angle) {
    return make([&](VipsImage** out) { return vips_rot(in.get(), out, angle, nullptr); });
}
Image mirrored(const Image& in, VipsDirection direction) {
    return make([&](VipsImage** out) { return vips_flip(in.get(), out, direction, nullptr); });
}
Image contrast(const Image& in, double factor, double shift = 0) {
    return make([&](VipsImage** out) {
        return vips_linear1(in.get(), out, factor, 128 * (1 - factor) + shift, "uchar", TRUE, nullptr);
    });
}
Image saturated(const Image& in, double factor) {
    auto lch = make([&](VipsImage** out) { return vips_colourspace(in.get(), out, VIPS_INTERPRETATION_LCH, nullptr); });
    const double scale[] = {1, factor, 1}, offset[] = {0, 0, 0};
    lch = make([&](VipsImage** out) { return vips_linear(lch.get(), out, scale, offset, 3, nullptr); });
    return make([&](VipsImage** out) { return vips_colourspace(lch.get(), out, VIPS_INTERPRETATION_sRGB, nullptr); });
}
Image blurred(const Image& in, double share) {
    const double sigma = share * std::max(in->Xsize, in->Ysize);
    return make([&](VipsImage** out) { return vips_gaussblur(in.get(), out, sigma, nullptr); });
}
Image sharpened(const Image& in, double sigma) {
    return make([&](VipsImage** out) { return vips_sharpen(in.get(), out, "sigma", sigma, "m2", 4.0, nullptr); });
}

const std::vector<Variant>& variants() {
    static const std::vector<Variant> all{
        {"re-encoded, quality 75", [](const Image& in) { return in; }, 75},
        {"re-encoded, quality 40", [](const Image& in) { return in; }, 40},
        {"resized to a half", [](const Image& in) { return scaled(in, 0.5); }},
        {"resized to a tenth", [](const Image& in) { return scaled(in, 0.1); }},
        {"rotated 90°", [](const Image& in) { return turned(in, VIPS_ANGLE_D90); }},
        {"rotated 180°", [](const Image& in) { return turned(in, VIPS_ANGLE_D180); }},
        {"rotated 270°", [](const Image& in) { return turned(in, VIPS_ANGLE_D270); }},
        {"mirrored left-right", [](const Image& in) { return mirrored(in, VIPS_DIRECTION_HORIZONTAL); }},
        {"mirrored top-bottom", [](const Image& in) { return mirrored(in, VIPS_DIRECTION_VERTICAL); }},
        {"mirrored diagonally",
         [](const Image& in) { return mirrored(turned(in, VIPS_ANGLE_D90), VIPS_DIRECTION_HORIZONTAL); }},
        {"contrast +25 %", [](const Image& in) { return contrast(in, 1.25); }},
        {"contrast −20 %", [](const Image& in) { return contrast(in, 0.8); }},
        {"brightness +8 %", [](const Image& in) { return contrast(in, 1, 20); }},
        {"saturation +40 %", [](const Image& in) { return saturated(in, 1.4); }},
        {"saturation −40 %", [](const Image& in) { return saturated(in, 0.6); }},
        {"sharpened", [](const Image& in) { return sharpened(in, 1.0); }},
        {"sharpened much", [](const Image& in) { return sharpened(in, 3.0); }},
        {"blurred, σ 0.2 % of the long edge", [](const Image& in) { return blurred(in, 0.002); }},
        {"blurred, σ 0.5 % of the long edge", [](const Image& in) { return blurred(in, 0.005); }},
    };
    return all;
}

/// All variants of one photo against it; nothing where libvips alone cannot open it.
void scoreVariants(Scores& scores, const std::string& path, const fs::path& scratch) {
    const auto original = tryFingerprint(path);
    if (!original || original->isLowDetail()) return;
    try {
        auto image = make([&](VipsImage** out) {
            *out = vips_image_new_from_file(path.c_str(), nullptr);
            return *out ? 0 : -1;
        });
        image = make([&](VipsImage** out) { return vips_autorot(image.get(), out, nullptr); });
        image = make([&](VipsImage** out) { return vips_colourspace(image.get(), out, VIPS_INTERPRETATION_sRGB, nullptr); });
        if (std::max(image->Xsize, image->Ysize) < 320) return; // a tenth would be a thumbnail of a thumbnail
        image = make([&](VipsImage** out) { return (*out = vips_image_copy_memory(image.get())) ? 0 : -1; });
        for (const auto& variant : variants()) {
            const auto file = (scratch / "variant.jpg").string();
            if (vips_jpegsave(variant.change(image).get(), file.c_str(), "Q", variant.quality, nullptr) != 0) {
                vips_error_clear();
                continue;
            }
            if (const auto changed = tryFingerprint(file)) count(scores, variant.relation, *changed, *original, path);
        }
    } catch (const std::exception& error) {
        std::printf("no variants of %s: %s\n", path.c_str(), error.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return std::fprintf(stderr, "usage: %s CORPUS\n", argv[0]), 2;
    const fs::path corpus = argv[1];
    const auto labels = readLabels(corpus);
    print("labelled pair", scoreLabels(labels));

    std::set<std::string> labelledPaths;
    for (const auto& row : labels) labelledPaths.insert((corpus / row.path).string());
    Scores scores;
    const fs::path scratch = fs::temp_directory_path() / "lumisort-accuracy";
    fs::create_directories(scratch);
    std::vector<std::string> outside;
    for (const char* folder : {"photos", "heic"})
        for (const auto& entry : fs::recursive_directory_iterator(corpus / folder))
            if (entry.is_regular_file() && !labelledPaths.contains(entry.path().string()))
                outside.push_back(entry.path().string());
    std::ranges::sort(outside);
    for (const auto& path : outside) scoreVariants(scores, path, scratch);
    fs::remove_all(scratch);
    print("variant of a photo outside the labels", scores);

    std::vector<library::Photo> photos;
    for (const char* folder : {"photos", "heic", "groups", "orientation"})
        for (const auto& entry : fs::recursive_directory_iterator(corpus / folder))
            if (entry.is_regular_file()) photos.push_back({.url = files::FileUrl::fromPath(entry.path().string())});
    const auto services = SimilarityEngine::ScanServices::real();
    FingerprintCache cache;
    for (const auto level : allSimilarityLevels) {
        auto result = SimilarityEngine::scan(services, photos, level, cache, 2, {});
        std::printf("\n%s: %zu groups\n", std::string(rawValue(level)).c_str(), result.groups.size());
        for (const auto& group : result.groups) {
            std::printf("-\n");
            for (const auto& photo : group.photos) {
                const auto name = fs::relative(photo.url.path(), corpus).string();
                const auto row = std::ranges::find(labels, name, &Labelled::path);
                std::printf("   %s [%s]\n", name.c_str(), row == labels.end() ? "" : (row->group + ", " + row->relation).c_str());
            }
        }
        cache = std::move(result.cache);
    }
}
