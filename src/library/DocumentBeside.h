#pragma once

#include "platform/files/AtomicFile.h"
#include "platform/files/DurableFolders.h"
#include "platform/json/Document.h"
#include "platform/json/Writer.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace lumisort::library {

/// Throws files::FileError where the document at `path` is missing, malformed, or of another version than 1.
void requireFirstVersion(files::FileSystem& system, const std::string& path);

/// A small document of its own beside the library document: one JSON object with the fields of `Contents`
/// and "version", which is 1. `Contents` has `write(json::Writer&) const`, which writes its fields inside an
/// object that was begun, and `static Contents read(json::Value)`, which reads them from the whole object.
///
/// The document is read once and then held. One that cannot be read is read anew each time and never
/// written. Any thread of the program that holds the library's lock; calls wait for each other. The file
/// system must outlive the object.
template <class Contents>
class DocumentBeside {
public:
    DocumentBeside(files::FileSystem& system, files::FileUrl url) : system_(system), url_(std::move(url)) {}

    /// Empty contents where there is no document. Also removes what killed programs left of their writes.
    /// Throws files::FileError.
    Contents read() {
        const std::scoped_lock lock(mutex_);
        return held();
    }

    /// Replaces the document with what `change` makes of it, and returns that; after a crash the old or the
    /// new one is there. Nothing is written where both are the same. Throws files::FileError; the document is
    /// then as it was, or, where only the last flush failed, holds the change.
    Contents change(const std::function<void(Contents&)>& change) {
        const std::scoped_lock lock(mutex_);
        auto changed = held();
        change(changed);
        if (changed == *contents_) return changed;
        const auto text = json::toText([&](json::Writer& out) {
            out.beginObject();
            changed.write(out);
            out.key("version").integer(1);
            out.endObject();
        });
        files::createDurableFolders(system_, url_.parent().path());
        contents_.reset(); // a write that fails late has replaced the file: what it holds is read then
        files::replaceFile(system_, url_.path(), text);
        return contents_.emplace(std::move(changed));
    }

private:
    const Contents& held() {
        if (contents_) return *contents_;
        files::removeLeftovers(system_, url_.path());
        Contents found;
        try {
            requireFirstVersion(system_, url_.path());
            json::readDocument(system_, url_.path(), [&](json::Value root) { found = Contents::read(root); });
        } catch (const files::FileError& error) {
            if (!error.isMissing()) throw;
        }
        return contents_.emplace(std::move(found));
    }

    files::FileSystem& system_;
    const files::FileUrl url_;
    std::mutex mutex_;
    std::optional<Contents> contents_; ///< as it is on disk, none where that is not known; guarded by mutex_
};

} // namespace lumisort::library
