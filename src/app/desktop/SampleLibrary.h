#pragma once

#include "platform/files/FileUrl.h"

#include <QTemporaryDir>

namespace lumisort::app {

/// Libraries that the program makes for itself, to show its pages with. Their files go when this goes.
class SampleLibrary {
public:
    /// Throws std::runtime_error when there is no room for them.
    SampleLibrary();

    /// The document of a library that holds nothing.
    files::FileUrl empty() const { return folder_.child("empty.json"); }
    /// A document with a few pictures: two equal, two alike, a camera RAW, one to keep, one to skip, one on a
    /// drive that is not there.
    const files::FileUrl& document() const { return document_; }

private:
    void paintPictures() const;
    void writeDocument() const;

    QTemporaryDir directory_;
    files::FileUrl folder_, pictures_, document_;
};

} // namespace lumisort::app
