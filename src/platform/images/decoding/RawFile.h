#pragma once

#include "platform/images/Orientation.h"
#include "platform/images/decoding/ByteSource.h"

#include <libraw/libraw.h>

#include <memory>
#include <stop_token>
#include <string>

namespace lumisort::images {

/// A camera RAW opened with LibRaw. Used by one thread.
class RawFile {
public:
    /// Reads the header. Throws DevelopmentError.
    explicit RawFile(const FileBytes& file);
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    LibRaw& operator*() const { return *raw_; }
    LibRaw* operator->() const { return raw_.get(); }
    /// LibRaw's flip, 0 … 7: one bit each for exchanging rows and columns (4), mirroring top-bottom (2) and
    /// left-right (1).
    int flip() const { return flip_; }
    Orientation orientation() const;
    const std::string& date() const { return date_; }

    /// Runs one of LibRaw's steps, which looks at `stop`. Throws DevelopmentError where it fails, and
    /// tasks::Cancelled.
    void run(int (LibRaw::*step)(), const std::stop_token& stop);
    /// Reads the sensor's samples. Throws as run(), also where they hold no picture.
    void unpack(const std::stop_token& stop);

    /// Throws DevelopmentError for any of LibRaw's error codes.
    static void check(int error);

private:
    std::string date_;
    std::unique_ptr<LibRaw> raw_;
    int flip_ = 0;
};

} // namespace lumisort::images
