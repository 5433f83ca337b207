// What visual similarity finds and what it mistakes, on real photos, as Markdown.
//
//   benchmark-visual_accuracy CORPUS [SHEET.html]
//
// writes the groups of all photos at the balanced level into SHEET.html, to be looked at.
// CORPUS holds groups/groups.csv (path, group, relation, note) and other photos, taken to be different, below
// photos/.

#include "library/Photo.h"
#include "similarity/report/ContactSheet.h"
#include "similarity/visual/VisualScan.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace {

using namespace lumisort;
using namespace lumisort::similarity;
namespace fs = std::filesystem;

struct Row {
    std::string path, scene, relation;
};

std::vector<Row> readRows(const fs::path& corpus) {
    std::ifstream file(corpus / "groups/groups.csv");
    std::string line;
    std::getline(file, line); // the heading
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        Row row;
        std::getline(fields, row.path, ',');
        std::getline(fields, row.scene, ',');
        std::getline(fields, row.relation, ',');
        rows.push_back(row);
    }
    return rows;
}

std::vector<library::Photo> photosAt(const fs::path& corpus, const std::vector<std::string>& paths) {
    std::vector<library::Photo> photos;
    for (const auto& path : paths)
        photos.push_back({.url = files::FileUrl::fromPath((corpus / path).string()), .date = {}});
    return photos;
}

struct Share {
    int found = 0, all = 0;
};
using Levels = std::array<Share, allSimilarityLevels.size()>;

void count(Levels& levels, float apart) {
    for (std::size_t level = 0; level < levels.size(); ++level) {
        levels[level].all += 1;
        levels[level].found += apart <= featureRadius(allSimilarityLevels[level]);
    }
}

/// Relations between equals count for every pair of a scene; edits count against the scene's first photo.
bool isAmongEquals(const std::string& relation) {
    static const std::set<std::string> equals{"burst",       "exposure",    "metadata-only",
                                              "orientation", "same-source", "viewpoint"};
    return equals.contains(relation);
}

class Report {
public:
    Report(fs::path corpus, const VisualScan& engine) : corpus_(std::move(corpus)), engine_(engine) {
        rows_ = readRows(corpus_);
        for (const auto& row : rows_) scene_[row.path] = row.scene;
    }

    void printRecall() {
        std::vector<std::string> paths;
        for (const auto& row : rows_) paths.push_back(row.path);
        const auto prints = scanned(paths, SimilarityLevel::balanced).cache;
        const auto printOf = [&](const Row& row) -> const FeaturePrint* {
            const auto cached = prints.find(files::FileUrl::fromPath((corpus_ / row.path).string()));
            return cached == prints.end() ? nullptr : cached->second.observation.get();
        };
        std::map<std::string, Levels> table;
        std::map<std::string, const FeaturePrint*> references;
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            const FeaturePrint* print = printOf(rows_[i]);
            if (!print) continue;
            const auto [reference, isFirst] = references.emplace(rows_[i].scene, print);
            if (!isAmongEquals(rows_[i].relation)) {
                if (!isFirst) count(table[rows_[i].relation], distance(*reference->second, *print));
                continue;
            }
            for (std::size_t j = 0; j < i; ++j)
                if (rows_[j].scene == rows_[i].scene && rows_[j].relation == rows_[i].relation)
                    if (const FeaturePrint* other = printOf(rows_[j]))
                        count(table[rows_[i].relation], distance(*other, *print));
        }
        std::printf(
            "## Pairs of one scene that are found\n\n| relation | pairs | strict | balanced | loose |\n"
            "|---|---|---|---|---|\n");
        for (const auto& [relation, levels] : table) {
            std::printf("| %s | %d |", relation.c_str(), levels[0].all);
            for (const auto& [found, all] : levels) std::printf(" %.0f %% |", 100.0 * found / all);
            std::printf("\n");
        }
    }

    void printGroups() {
        std::vector<std::string> paths;
        for (const auto& row : rows_) paths.push_back(row.path);
        std::printf("\n## Groups\n\n| level | groups | bursts in one group | groups of several scenes |\n"
                    "|---|---|---|---|\n");
        for (const auto level : allSimilarityLevels) {
            const auto result = scanned(paths, level);
            std::map<std::string, std::set<std::size_t>> burstGroups; // scene to the groups of its photos
            std::map<std::string, int> ungrouped;
            std::vector<std::string> mixtures;
            for (const auto& row : rows_)
                if (row.relation == "burst") burstGroups[row.scene] = {}, ungrouped[row.scene] += 1;
            for (std::size_t i = 0; i < result.groups.size(); ++i) {
                std::set<std::string> scenes;
                for (const auto& photo : result.groups[i].photos) {
                    const auto& scene = scene_[pathIn(photo)];
                    scenes.insert(scene);
                    if (const auto burst = burstGroups.find(scene); burst != burstGroups.end())
                        burst->second.insert(i), ungrouped[scene] -= 1;
                }
                if (scenes.size() > 1) {
                    std::string mixture;
                    for (const auto& scene : scenes) mixture += (mixture.empty() ? "" : " + ") + scene;
                    mixtures.push_back(mixture);
                }
            }
            const auto whole = std::ranges::count_if(burstGroups, [&](const auto& burst) {
                return burst.second.size() == 1 && ungrouped[burst.first] == 0;
            });
            std::printf("| %s | %zu | %d of %zu | %zu", std::string(storedName(level)).c_str(),
                        result.groups.size(), static_cast<int>(whole), burstGroups.size(), mixtures.size());
            for (const auto& mixture : mixtures) std::printf("; %s", mixture.c_str());
            std::printf(" |\n");
        }
    }

    void printMistakes() {
        const auto paths = photosOnly();
        const auto prints = scanned(paths, SimilarityLevel::balanced).cache;
        std::vector<std::pair<std::string, const FeaturePrint*>> photos;
        for (const auto& path : paths)
            if (const auto cached = prints.find(files::FileUrl::fromPath((corpus_ / path).string()));
                cached != prints.end())
                photos.emplace_back(path, cached->second.observation.get());
        Levels levels;
        std::vector<std::pair<float, std::string>> nearest;
        for (std::size_t i = 0; i < photos.size(); ++i)
            for (std::size_t j = 0; j < i; ++j) {
                const auto& [a, first] = photos[j];
                const auto& [b, second] = photos[i];
                const float apart = distance(*first, *second);
                if (sameScene(a, b)) continue;
                count(levels, apart);
                if (apart <= featureRadius(SimilarityLevel::loose))
                    nearest.emplace_back(apart, a + " and " + b);
            }
        std::ranges::sort(nearest);
        std::printf(
            "\n## Pairs of different photos that are mistaken\n\n%zu photos, %d pairs\n\n| level | pairs | "
            "share |\n|---|---|---|\n",
            photos.size(), levels[0].all);
        for (std::size_t level = 0; level < levels.size(); ++level)
            std::printf("| %s | %d | %.1e |\n", std::string(storedName(allSimilarityLevels[level])).c_str(),
                        levels[level].found, static_cast<double>(levels[level].found) / levels[level].all);
        std::printf("\n| distance | pair |\n|---|---|\n");
        for (const auto& [apart, pair] : nearest)
            std::printf("| %.3f | %s |\n", static_cast<double>(apart), pair.c_str());
    }

    void writeSheet(const char* path) {
        std::vector<std::string> paths = photosOnly();
        for (const auto& row : rows_)
            if (!row.path.starts_with("photos/")) paths.push_back(row.path);
        const auto result = scanned(paths, SimilarityLevel::balanced);
        std::ofstream file(path, std::ios::binary);
        const ContactSheetOptions options{
            .title = "Visual Similarity", .subtitle = "Balanced", .failures = result.failures};
        writeContactSheet(result.groups, options, [&](std::string_view piece) { file << piece; }, {});
    }

private:
    std::vector<std::string> photosOnly() const {
        std::vector<std::string> paths;
        for (const auto& entry : fs::recursive_directory_iterator(corpus_ / "photos"))
            if (entry.is_regular_file()) paths.push_back(fs::relative(entry.path(), corpus_).string());
        std::ranges::sort(paths);
        return paths;
    }
    VisualScanResult scanned(const std::vector<std::string>& paths, SimilarityLevel level) {
        auto result =
            engine_.scan(photosAt(corpus_, paths), level, cache_, 2, [](double, std::string_view) {}, {});
        cache_.insert(result.cache.begin(), result.cache.end());
        return result;
    }
    std::string pathIn(const library::Photo& photo) const {
        return fs::relative(photo.url.path(), corpus_).string();
    }
    bool sameScene(const std::string& a, const std::string& b) const {
        const auto first = scene_.find(a), second = scene_.find(b);
        return first != scene_.end() && second != scene_.end() && first->second == second->second;
    }

    fs::path corpus_;
    const VisualScan& engine_;
    FeaturePrintCache cache_;
    std::vector<Row> rows_;
    std::map<std::string, std::string> scene_; // by path
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::fputs("usage: benchmark-visual_accuracy CORPUS [SHEET.html]\n", stderr), 2;
    try {
        const VisualScan engine(VisualScanDependencies::of(std::make_shared<const FeaturePrintModel>()),
                                files::FileSystem::real(), time::Clock::system());
        Report report(fs::canonical(argv[1]), engine);
        report.printRecall();
        report.printGroups();
        report.printMistakes();
        if (argc > 2) report.writeSheet(argv[2]);
    } catch (const std::exception& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
