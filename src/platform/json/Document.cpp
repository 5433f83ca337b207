#include "platform/json/Document.h"

#include "platform/files/AtomicFile.h"

namespace lumisort::json {

void readDocument(files::FileSystem& system, const std::string& path,
                  const std::function<void(Value)>& read) {
    try {
        parse(files::readFile(system, path, maxDocumentBytes), read);
    } catch (const FormatError& error) {
        throw files::FileError("read", path, error.what());
    }
}

} // namespace lumisort::json
