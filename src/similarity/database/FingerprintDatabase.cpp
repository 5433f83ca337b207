#include "similarity/database/FingerprintDatabase.h"

#include "platform/files/DurableFolders.h"
#include "platform/files/FileError.h"
#include "platform/files/Uuid.h"

#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace lumisort::similarity {

namespace {

/// Tells this program's databases from others ("Lumi"), and this version's from later ones.
constexpr int applicationId = 0x4c756d69, schemaVersion = 1;
constexpr int lockedMilliseconds = 2'000;

struct DatabaseError : std::runtime_error {
    DatabaseError(sqlite3* database, int errorCode)
        : std::runtime_error(database ? sqlite3_errmsg(database) : sqlite3_errstr(errorCode)),
          code(errorCode & 0xff) {}
    /// The file holds something else or is damaged, so that only a new one helps.
    bool isUnusableFile() const {
        return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_MISMATCH;
    }
    int code;
};

/// Days since the Unix epoch: when a value was last of use.
std::int64_t today() {
    return std::chrono::duration_cast<std::chrono::days>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

/// An open database whose statements are prepared once. Every operation throws DatabaseError.
class FingerprintDatabase::Connection {
public:
    class Statement {
    public:
        Statement(sqlite3* database, const char* sql) : database_(database) {
            check(sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr));
        }
        ~Statement() { sqlite3_finalize(statement_); }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        Statement& bind(int place, std::int64_t value) {
            check(sqlite3_bind_int64(statement_, place, value));
            return *this;
        }
        Statement& bind(int place, const std::optional<time::Timestamp>& value) {
            check(value ? sqlite3_bind_double(statement_, place, value->secondsSince2001())
                        : sqlite3_bind_null(statement_, place));
            return *this;
        }
        /// `bytes` must live until the statement ran.
        Statement& bind(int place, std::string_view bytes) {
            check(sqlite3_bind_blob64(statement_, place, bytes.data(), bytes.size(), SQLITE_STATIC));
            return *this;
        }
        /// True with a row to read; false at the end, when the statement may be bound and run again.
        bool step() {
            const int code = sqlite3_step(statement_);
            if (code == SQLITE_ROW) return true;
            const int reset = sqlite3_reset(statement_);
            if (code != SQLITE_DONE) throw DatabaseError(database_, reset == SQLITE_OK ? code : reset);
            return false;
        }
        void finish() { sqlite3_reset(statement_); }

        std::int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }
        std::optional<time::Timestamp> timestamp(int column) const {
            if (sqlite3_column_type(statement_, column) == SQLITE_NULL) return std::nullopt;
            return time::Timestamp(sqlite3_column_double(statement_, column));
        }
        std::string bytes(int column) const {
            const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_, column));
            return {data ? data : "", static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
        }

    private:
        void check(int code) const {
            if (code != SQLITE_OK) throw DatabaseError(database_, code);
        }
        sqlite3* database_;
        sqlite3_stmt* statement_ = nullptr;
    };

    explicit Connection(const std::string& file) : database_(open(file)) {
        run("PRAGMA auto_vacuum=INCREMENTAL");
        // The journal's other half is a file beside the database; where that cannot be, nothing works below.
        run("PRAGMA journal_mode=WAL");
        run("PRAGMA synchronous=NORMAL");
        if (number("PRAGMA user_version") == 0 && number("SELECT count(*) FROM sqlite_schema") == 0) create();
        if (number("PRAGMA application_id") != applicationId ||
            number("PRAGMA user_version") != schemaVersion)
            throw DatabaseError(nullptr, SQLITE_NOTADB);
    }

    void run(const char* sql) {
        if (const int code = sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr); code != SQLITE_OK)
            throw DatabaseError(database_.get(), code);
    }
    std::int64_t number(const char* sql) {
        Statement statement(database_.get(), sql);
        const auto value = statement.step() ? statement.integer(0) : 0;
        statement.finish();
        return value;
    }
    /// Runs `work` in one transaction, which is taken back when it throws.
    template <class Work>
    void transaction(Work work) {
        run("BEGIN IMMEDIATE");
        try {
            work();
            run("COMMIT");
        } catch (...) {
            sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
            throw;
        }
    }
    Statement prepare(const char* sql) { return {database_.get(), sql}; }
    std::int64_t bytes() { return number("PRAGMA page_count") * number("PRAGMA page_size"); }
    std::int64_t usedBytes() {
        return (number("PRAGMA page_count") - number("PRAGMA freelist_count")) * number("PRAGMA page_size");
    }
    std::int64_t algorithm(std::string_view name) {
        prepare("INSERT OR IGNORE INTO algorithms(name) VALUES(?)").bind(1, name).step();
        auto found = prepare("SELECT id FROM algorithms WHERE name=?");
        found.bind(1, name).step();
        return found.integer(0);
    }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    using Handle = std::unique_ptr<sqlite3, Close>;

    static Handle open(const std::string& file) {
        sqlite3* database = nullptr;
        const int code =
            sqlite3_open_v2(file.c_str(), &database,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
        Handle handle(database);
        if (code != SQLITE_OK) throw DatabaseError(database, code);
        sqlite3_busy_timeout(database, lockedMilliseconds);
        return handle;
    }
    void create() {
        transaction([&] {
            if (number("PRAGMA user_version") != 0) return; // Another program has just created it.
            run("CREATE TABLE algorithms(id INTEGER PRIMARY KEY, name BLOB UNIQUE NOT NULL);"
                "CREATE TABLE entries(algorithm INTEGER NOT NULL, photo BLOB NOT NULL, size INTEGER NOT NULL,"
                " modified REAL, created REAL, value BLOB NOT NULL, used INTEGER NOT NULL,"
                " PRIMARY KEY(algorithm, photo)) WITHOUT ROWID;"
                "CREATE INDEX entries_by_use ON entries(used)");
            run(("PRAGMA application_id=" + std::to_string(applicationId)).c_str());
            run(("PRAGMA user_version=" + std::to_string(schemaVersion)).c_str());
        });
    }

    Handle database_;
};

FingerprintDatabase::FingerprintDatabase(std::string file, std::int64_t limitBytes)
    : file_(std::move(file)), limitBytes_(limitBytes) {
    open();
}

FingerprintDatabase::~FingerprintDatabase() = default;

std::string FingerprintDatabase::defaultFile() {
    const auto* named = std::getenv("XDG_CACHE_HOME"); // NOLINT(concurrency-mt-unsafe): nothing sets it
    const auto* home = std::getenv("HOME");            // NOLINT(concurrency-mt-unsafe)
    const std::string folder =
        named && *named == '/' ? named : std::string(home && *home ? home : "/") + "/.cache";
    return folder + "/lumisort/fingerprints.sqlite";
}

void FingerprintDatabase::open() {
    bool mayReplace = true;
    while (true) try {
            files::createDurableFolders(files::FileSystem::real(),
                                        std::filesystem::path(file_).parent_path());
            connection_ = std::make_unique<Connection>(file_);
            return;
        } catch (const DatabaseError& error) {
            if (!error.isUnusableFile() || !std::exchange(mayReplace, false)) {
                problem_ = "“" + file_ + "” is not used: " + error.what() + ".";
                return;
            }
            const auto aside = file_ + ".unreadable-" + files::randomUuid().substr(0, 8);
            std::error_code ignored;
            std::filesystem::rename(file_, aside, ignored);
            if (ignored) {
                problem_ = "“" + file_ + "” is not used: " + error.what() + ".";
                return;
            }
            for (const auto* suffix : {"-wal", "-shm"}) std::filesystem::remove(file_ + suffix, ignored);
            problem_ = "“" + file_ + "” could not be read and is now “" + aside + "”.";
        } catch (const std::exception& error) {
            problem_ = "“" + file_ + "” is not used: " + error.what();
            return;
        }
}

template <class Work>
void FingerprintDatabase::attempt(Work work) {
    const std::scoped_lock lock(mutex_);
    if (!connection_) return;
    try {
        work(*connection_);
    } catch (const DatabaseError& error) {
        if (error.code == SQLITE_BUSY)
            return; // Another program is writing; it costs this call's values alone.
        problem_ = "“" + file_ + "” is no longer used: " + error.what() + ".";
        connection_.reset();
    }
}

std::vector<std::optional<StoredValue>> FingerprintDatabase::read(std::string_view algorithm,
                                                                  std::span<const files::FileUrl> photos) {
    std::vector<std::optional<StoredValue>> values(photos.size());
    attempt([&](Connection& connection) {
        const auto day = today();
        connection.transaction([&] {
            const auto id = connection.algorithm(algorithm);
            auto found = connection.prepare("SELECT size, modified, created, value, used FROM entries"
                                            " WHERE algorithm=?1 AND photo=?2");
            auto touched = connection.prepare("UPDATE entries SET used=?3 WHERE algorithm=?1 AND photo=?2");
            for (std::size_t i = 0; i < photos.size(); ++i) {
                const auto path = photos[i].path();
                if (found.bind(1, id).bind(2, path).step()) {
                    values[i] = StoredValue{photos[i],
                                            {found.integer(0), found.timestamp(1), found.timestamp(2)},
                                            found.bytes(3)};
                    const bool isStale = found.integer(4) != day;
                    found.finish();
                    if (isStale) touched.bind(1, id).bind(2, path).bind(3, day).step();
                }
            }
        });
    });
    return values;
}

void FingerprintDatabase::write(std::string_view algorithm, std::span<const StoredValue> values) {
    if (values.empty()) return;
    attempt([&](Connection& connection) {
        const auto day = today();
        connection.transaction([&] {
            const auto id = connection.algorithm(algorithm);
            auto insert = connection.prepare("INSERT OR REPLACE INTO entries VALUES(?,?,?,?,?,?,?)");
            for (const auto& value : values) {
                const auto path = value.photo.path();
                insert.bind(1, id).bind(2, path).bind(3, value.stamp.size).bind(4, value.stamp.modified);
                insert.bind(5, value.stamp.created).bind(6, value.bytes).bind(7, day).step();
            }
        });
        // A tenth below the limit, so that not every write removes something.
        while (connection.usedBytes() > limitBytes_) {
            connection.transaction([&] {
                connection.run(
                    "DELETE FROM entries WHERE (algorithm, photo) IN (SELECT algorithm, photo FROM entries"
                    " ORDER BY used LIMIT max(1, (SELECT count(*) FROM entries) / 10))");
            });
            if (connection.number("SELECT count(*) FROM entries") == 0) break;
        }
        connection.run("PRAGMA incremental_vacuum");
    });
}

void FingerprintDatabase::clear() {
    attempt([](Connection& connection) {
        connection.run("DELETE FROM entries");
        connection.run("VACUUM");
        connection.run("PRAGMA wal_checkpoint(TRUNCATE)");
    });
}

DatabaseStatus FingerprintDatabase::status() {
    DatabaseStatus status;
    attempt([&](Connection& connection) {
        status.values = connection.number("SELECT count(*) FROM entries");
        status.photos = connection.number("SELECT count(DISTINCT photo) FROM entries");
        status.bytes = connection.bytes();
    });
    return status;
}

std::string FingerprintDatabase::problem() {
    const std::scoped_lock lock(mutex_);
    return problem_;
}

} // namespace lumisort::similarity
