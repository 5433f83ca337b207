#include "similarity/database/StoredCaches.h"

#include "platform/tasks/Cancellation.h"
#include "similarity/Fingerprinting.h"
#include "similarity/database/FingerprintForm.h"
#include "similarity/match/SharedModel.h"

#include <algorithm>
#include <future>
#include <utility>

namespace lumisort::similarity {

namespace {

/// Photos of one transaction. Others that use the database wait for it, and a stop is noticed after it.
constexpr std::size_t batchSize = 4'096;

std::string algorithmOf(const FeaturePrintIdentity& identity) {
    return "feature print " + std::to_string(identity.revision) + " " + identity.name + " " +
           identity.weightsSha256;
}

/// Calls `take(StoredValue&)` with each value that is stored for a photo that `cache` does not hold.
template <class Cache, class Take>
void readInto(Cache& cache, FingerprintDatabase& database, std::string_view algorithm,
              const std::vector<library::Photo>& photos, const std::stop_token& stop, Take take) {
    std::vector<files::FileUrl> wanted;
    for (const auto& photo : photos)
        if (!cache.contains(photo.url)) wanted.push_back(photo.url);
    for (std::size_t first = 0; first < wanted.size(); first += batchSize) {
        tasks::checkCancelled(stop);
        const auto batch = std::span(wanted).subspan(first, std::min(batchSize, wanted.size() - first));
        for (const auto& value : database.read(algorithm, batch))
            if (value) take(*value);
    }
}

template <class Cache>
bool holds(const Cache& cache, const typename Cache::value_type& entry) {
    const auto found = cache.find(entry.first);
    return found != cache.end() && found->second.stamp == entry.second.stamp;
}

} // namespace

StoredCaches::StoredCaches(std::string file) : database_(std::move(file)) {}

MatchResult StoredCaches::findMatches(const std::vector<library::Photo>& photos, SimilarityMethod method,
                                      SimilarityLevel level, MatchCaches& known,
                                      const MatchProgress& progress, const std::stop_token& stop) {
    load(known, photos, method, stop);
    auto result = similarity::findMatches(photos, method, level, known, progress, stop);
    store(result.caches, known);
    result.storageProblem = problem();
    return result;
}

void StoredCaches::load(MatchCaches& known, const std::vector<library::Photo>& photos,
                        SimilarityMethod method, const std::stop_token& stop) {
    if (method == SimilarityMethod::nearDuplicates) {
        readInto(known.fingerprints, database_, fingerprintAlgorithm, photos, stop,
                 [&](const StoredValue& value) {
                     if (auto fingerprint = fingerprintFrom(value.bytes))
                         known.fingerprints.try_emplace(value.photo, value.stamp, *std::move(fingerprint));
                 });
    } else if (method == SimilarityMethod::visual) {
        const auto identity =
            std::make_shared<const FeaturePrintIdentity>(sharedFeaturePrintModel()->identity());
        readInto(known.prints, database_, algorithmOf(*identity), photos, stop,
                 [&](const StoredValue& value) {
                     if (const auto print = featurePrintFrom(value.bytes))
                         known.prints.try_emplace(value.photo, value.stamp,
                                                  std::make_shared<const FeaturePrint>(*print), identity);
                 });
    }
}

void StoredCaches::store(const MatchCaches& found, const MatchCaches& known) {
    std::vector<StoredValue> fingerprints;
    for (const auto& entry : found.fingerprints)
        if (!holds(known.fingerprints, entry))
            fingerprints.push_back({entry.first, entry.second.stamp, bytesOf(entry.second.fingerprint)});
    write(std::string(fingerprintAlgorithm), std::move(fingerprints));

    std::vector<StoredValue> prints;
    for (const auto& entry : found.prints)
        if (!holds(known.prints, entry))
            prints.push_back({entry.first, entry.second.stamp, bytesOf(*entry.second.observation)});
    if (!prints.empty()) write(algorithmOf(*found.prints.begin()->second.identity), std::move(prints));
}

void StoredCaches::flush() {
    std::promise<void> written;
    writer_.post([&] { written.set_value(); });
    written.get_future().wait();
}

void StoredCaches::write(std::string algorithm, std::vector<StoredValue> values) {
    for (std::size_t first = 0; first < values.size(); first += batchSize) {
        const auto end = std::min(first + batchSize, values.size());
        writer_.post(
            [this, algorithm,
             batch = std::vector(std::move_iterator(values.begin() + static_cast<std::ptrdiff_t>(first)),
                                 std::move_iterator(values.begin() + static_cast<std::ptrdiff_t>(end)))] {
                database_.write(algorithm, batch);
            });
    }
}

} // namespace lumisort::similarity
