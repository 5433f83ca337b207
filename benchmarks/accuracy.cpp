// How well near-duplicate matching tells copies and edits of a photo from other photos. Prints Markdown
// tables: which labelled pairs come into one group, which photos of different scenes do, and which variants,
// made here of photos without a label, match their original. What was missed or wrong goes to standard error,
// by name.
//
//   benchmark-accuracy CORPUS      the folder of real photos with its groups/groups.csv

#include "similarity/Fingerprinting.h"
#include "similarity/NearDuplicateScan.h"

#include <vips/vips.h>

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

using namespace lumisort;
using namespace lumisort::similarity;
namespace fs = std::filesystem;

namespace {

/// Found pairs by level, of all.
struct Score {
    std::array<int, 3> found{};
    int total = 0;
    std::vector<std::string> missed; ///< at balanced
};
using Scores = std::map<std::string, Score>;

struct Label {
    std::string scene, relation;
};
/// By path below the corpus.
using Labels = std::map<std::string, Label>;

bool isBase(const std::string& relation) {
    static const std::set<std::string> bases{"original", "exact", "exact-copy", "metadata-only",
                                             "same-source"};
    return bases.contains(relation);
}

Labels readLabels(const fs::path& corpus) {
    Labels labels;
    std::ifstream file(corpus / "groups" / "groups.csv");
    std::string line, path;
    for (std::getline(file, line); std::getline(file, line);) {
        std::istringstream fields(line);
        Label label;
        std::getline(std::getline(std::getline(fields, path, ','), label.scene, ','), label.relation, ',');
        // The table says less of these than the pictures show.
        if (path.ends_with("ukbench00120_resize.jpg")) label.relation = "stretch";
        if (path.ends_with("ukbench00120_gray.jpg")) label.relation = "made grey";
        if (path.ends_with("ukbench00120_rotation.jpg")) label.relation = "rotated by 20°";
        labels[path] = label;
    }
    return labels;
}

void printRecall(const char* title, const Scores& scores) {
    std::printf("\n| %s | pairs | strict | balanced | loose |\n|---|---|---|---|---|\n", title);
    for (const auto& [relation, score] : scores) {
        std::printf("| %s | %d |", relation.c_str(), score.total);
        for (const int found : score.found) std::printf(" %.1f %% |", 100.0 * found / score.total);
        std::printf("\n");
    }
    for (const auto& [relation, score] : scores)
        for (const auto& name : score.missed)
            std::fprintf(stderr, "missed at balanced: %s: %s\n", relation.c_str(), name.c_str());
}

/// The scene of a photo: as labelled, or the folder of one photo in all orientations, or the photo itself.
std::string sceneOf(const std::string& path, const Labels& labels) {
    if (const auto label = labels.find(path); label != labels.end()) return label->second.scene;
    return path.starts_with("orientation/") ? fs::path(path).parent_path().string() : path;
}

/// Scans the whole corpus at every level. A labelled pair is found when one group holds both photos; it is
/// made of a photo as it was and another of its scene, or, in scenes that have none such (orientations,
/// bursts, exposures), of any two. A pair in one group from two scenes is wrong.
void scoreGroups(const fs::path& corpus, const Labels& labels) {
    std::vector<library::Photo> photos;
    for (const char* folder : {"photos", "heic", "groups", "orientation"})
        for (const auto& entry : fs::recursive_directory_iterator(corpus / folder))
            if (entry.is_regular_file())
                photos.push_back({.url = files::FileUrl::fromPath(entry.path().string())});
    const auto relative = [&](const library::Photo& photo) {
        return photo.url.path().substr(corpus.string().size() + 1);
    };
    std::set<std::string> scenesWithBase;
    for (const auto& [path, label] : labels)
        if (isBase(label.relation)) scenesWithBase.insert(label.scene);

    Scores recall;
    std::string precision;
    FingerprintCache cache;
    for (const auto level : allSimilarityLevels) {
        auto result = scanNearDuplicates(NearDuplicateDependencies::real(), photos, level, cache, 4, {});
        std::map<std::string, std::size_t> groupOf;
        std::size_t pairs = 0, wrong = 0;
        for (std::size_t g = 0; g < result.groups.size(); ++g) {
            const auto& members = result.groups[g].photos;
            for (std::size_t i = 0; i < members.size(); ++i) {
                groupOf[relative(members[i])] = g;
                for (std::size_t j = 0; j < i; ++j, ++pairs) {
                    const auto a = relative(members[i]), b = relative(members[j]);
                    if (sceneOf(a, labels) == sceneOf(b, labels)) continue;
                    ++wrong;
                    std::fprintf(stderr, "wrong at %s: %s and %s\n", std::string(storedName(level)).c_str(),
                                 a.c_str(), b.c_str());
                }
            }
        }
        for (auto a = labels.begin(); a != labels.end(); ++a)
            for (auto b = std::next(a); b != labels.end(); ++b) {
                const auto &first = a->second, &second = b->second;
                if (first.scene != second.scene) continue;
                if (!result.cache.contains(files::FileUrl::fromPath((corpus / a->first).string())) ||
                    !result.cache.contains(files::FileUrl::fromPath((corpus / b->first).string())))
                    continue; // damaged
                const bool withBase = isBase(first.relation) || isBase(second.relation);
                if (!withBase && scenesWithBase.contains(first.scene)) continue;
                Score& score = recall[isBase(first.relation) ? second.relation : first.relation];
                score.total += level == SimilarityLevel::strict;
                const auto groupA = groupOf.find(a->first), groupB = groupOf.find(b->first);
                if (groupA != groupOf.end() && groupB != groupOf.end() && groupA->second == groupB->second)
                    ++score.found[static_cast<std::size_t>(level)];
                else if (level == SimilarityLevel::balanced)
                    score.missed.push_back(a->first + " and " + b->first);
            }
        precision += "| " + std::string(storedName(level)) + " | " + std::to_string(result.groups.size()) +
                     " | " + std::to_string(pairs) + " | " + std::to_string(wrong) + " |\n";
        cache = std::move(result.cache);
    }
    printRecall("labelled relation", recall);
    std::printf("\n| %zu photos | groups | pairs in them | of two scenes |\n|---|---|---|---|\n%s",
                photos.size(), precision.c_str());
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

template <class Make>
Image make(Make operation) {
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
    auto lch = make(
        [&](VipsImage** out) { return vips_colourspace(in.get(), out, VIPS_INTERPRETATION_LCH, nullptr); });
    const double scale[] = {1, factor, 1}, offset[] = {0, 0, 0};
    lch = make([&](VipsImage** out) { return vips_linear(lch.get(), out, scale, offset, 3, nullptr); });
    return make(
        [&](VipsImage** out) { return vips_colourspace(lch.get(), out, VIPS_INTERPRETATION_sRGB, nullptr); });
}
Image blurred(const Image& in, double share) {
    const double sigma = share * std::max(in->Xsize, in->Ysize);
    return make([&](VipsImage** out) { return vips_gaussblur(in.get(), out, sigma, nullptr); });
}
Image sharpened(const Image& in, double sigma) {
    return make(
        [&](VipsImage** out) { return vips_sharpen(in.get(), out, "sigma", sigma, "m2", 4.0, nullptr); });
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

std::optional<VisualFingerprint> tryFingerprint(const std::string& path) {
    try {
        return fingerprint(files::FileUrl::fromPath(path));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

/// All variants of one photo against it; nothing where libvips alone cannot open it.
void scoreVariants(Scores& scores, const std::string& path, const fs::path& scratch) {
    const auto original = tryFingerprint(path);
    if (!original || original->isLowDetail()) return;
    try {
        auto image = make([&](VipsImage** out) {
            return (*out = vips_image_new_from_file(path.c_str(), nullptr)) ? 0 : -1;
        });
        image = make([&](VipsImage** out) { return vips_autorot(image.get(), out, nullptr); });
        image = make([&](VipsImage** out) {
            return vips_colourspace(image.get(), out, VIPS_INTERPRETATION_sRGB, nullptr);
        });
        if (image->Bands != 3 || std::max(image->Xsize, image->Ysize) < 320) return;
        image = make([&](VipsImage** out) { return (*out = vips_image_copy_memory(image.get())) ? 0 : -1; });
        for (const auto& [relation, change, quality] : variants()) {
            const auto file = (scratch / "variant.jpg").string();
            if (vips_jpegsave(change(image).get(), file.c_str(), "Q", quality, nullptr) != 0)
                throw std::runtime_error(vips_error_buffer());
            const auto changed = tryFingerprint(file);
            Score& score = scores[relation];
            ++score.total;
            for (const auto level : allSimilarityLevels)
                if (changed && changed->matchDistance(*original, level))
                    ++score.found[static_cast<std::size_t>(level)];
                else if (level == SimilarityLevel::balanced)
                    score.missed.push_back(path);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "no variants of %s: %s\n", path.c_str(), error.what());
        vips_error_clear();
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return std::fprintf(stderr, "usage: %s CORPUS\n", argv[0]), 2;
    const fs::path corpus = fs::canonical(argv[1]);
    const auto labels = readLabels(corpus);
    scoreGroups(corpus, labels);

    Scores variantScores;
    const fs::path scratch = fs::temp_directory_path() / "lumisort-accuracy";
    fs::create_directories(scratch);
    for (const auto& entry : fs::recursive_directory_iterator(corpus / "photos"))
        if (entry.is_regular_file() && !labels.contains(fs::relative(entry.path(), corpus).string()))
            scoreVariants(variantScores, entry.path().string(), scratch);
    fs::remove_all(scratch);
    printRecall("variant of a photo without a label", variantScores);
}
