#include "model/MatchEngine.h"

#include "similarity/database/StoredCaches.h"

namespace lumisort::model {

MatchEngine engineWithStoredCaches() {
    return
        [](const auto& photos, auto method, auto level, auto& known, const auto& progress, const auto& stop) {
            static similarity::StoredCaches stored; // writes what is left when the program ends
            return stored.findMatches(photos, method, level, known, progress, stop);
        };
}

} // namespace lumisort::model
