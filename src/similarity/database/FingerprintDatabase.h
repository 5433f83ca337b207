#pragma once

#include "library/FileStamp.h"
#include "platform/files/FileUrl.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::similarity {

/// One computed value of one photo, with the state of the file that it was computed from.
struct StoredValue {
    files::FileUrl photo;
    library::FileStamp stamp;
    std::string bytes;
};

/// What a database holds; all 0 while it is out of use.
struct DatabaseStatus {
    std::int64_t values = 0;
    std::int64_t photos = 0;
    std::int64_t bytes = 0; ///< size of the file
};

/// Keeps values computed from photos between runs, in an SQLite database that several programs may use at
/// once. A value belongs to a photo's path and to the name of the algorithm that computed it; it is stored
/// with the file's stamp, which the reader compares with a fresh one. Where more than `limitBytes` are in
/// use, the values that were not read for the longest time are removed.
///
/// The database costs at most time: no operation throws. A file that is no database of this version is moved
/// aside once and a new one begun; on a disk that is full or read-only, or while another program keeps the
/// file locked, nothing is found or stored, and `problem` says why. Any thread; calls wait for each other.
class FingerprintDatabase {
public:
    static constexpr std::int64_t defaultLimitBytes = std::int64_t{2} << 30;

    /// Opens or creates the file and the folder that holds it.
    explicit FingerprintDatabase(std::string file, std::int64_t limitBytes = defaultLimitBytes);
    ~FingerprintDatabase();
    FingerprintDatabase(const FingerprintDatabase&) = delete;
    FingerprintDatabase& operator=(const FingerprintDatabase&) = delete;

    /// "lumisort/fingerprints.sqlite" in the user's cache folder (XDG_CACHE_HOME, or ~/.cache).
    static std::string defaultFile();

    /// The value of each photo, in the order of `photos`; none where there is no value.
    std::vector<std::optional<StoredValue>> read(std::string_view algorithm,
                                                 std::span<const files::FileUrl> photos);
    /// Stores values in one transaction, each in place of an earlier one of the same photo and algorithm.
    void write(std::string_view algorithm, std::span<const StoredValue> values);
    void clear();

    DatabaseStatus status();
    const std::string& file() const { return file_; }
    /// Why nothing is found or stored, or what was moved aside, in one line that names the file; "" without.
    std::string problem();

private:
    class Connection;

    /// Runs `work` with the connection; after a failure the database is out of use.
    template <class Work>
    void attempt(Work work);
    void open();

    const std::string file_;
    const std::int64_t limitBytes_;
    std::mutex mutex_;
    std::unique_ptr<Connection> connection_; ///< none while out of use; guarded by mutex_, as is the rest
    std::string problem_;
};

} // namespace lumisort::similarity
