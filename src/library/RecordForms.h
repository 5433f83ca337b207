#pragma once

#include "library/FileStamp.h"
#include "library/Photo.h"
#include "library/ReviewMark.h"
#include "platform/json/Reader.h"
#include "platform/json/Writer.h"

namespace lumisort::library {

/// The JSON forms of the records, as every document and the command line hold them. Optional values are left
/// out when absent; one that reads as null is absent. Keys come in any order and unknown ones are passed
/// over. The readers throw json::FormatError.

/// {"url","bytes","width","height","date"}; all but the date are required.
void write(json::Writer& out, const Photo& photo);
/// The same inside an object that the caller has begun, and may put more into.
void writeFields(json::Writer& out, const Photo& photo);
Photo readPhoto(json::Value value);

/// {"created","modified","size"}, written in this order, which a document with sorted keys needs; the size is
/// required.
void write(json::Writer& out, const FileStamp& stamp);
FileStamp readStamp(json::Value value);

/// {"decision","stamp"}, both required.
void write(json::Writer& out, const ReviewMark& mark);
ReviewMark readMark(json::Value value);

} // namespace lumisort::library
