#include "organize/Sidecar.h"

#include <cerrno>
#include <span>

namespace lumisort::organize {

std::string keptSidecarText() {
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
           " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
           "  <rdf:Description rdf:about=\"\"\n"
           "    xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\"\n"
           "    xmlns:digiKam=\"http://www.digikam.org/ns/1.0/\"\n"
           "    xmp:Rating=\"5\"\n"
           "    xmp:Label=\"Green\"\n"
           "    digiKam:PickLabel=\"3\"/>\n"
           " </rdf:RDF>\n"
           "</x:xmpmeta>\n"
           "<?xpacket end=\"w\"?>\n";
}

files::FileUrl sidecarOf(const files::FileUrl& copy) {
    return copy.parent().child(std::string(copy.name()) + ".xmp");
}

void writeKeptSidecar(files::FileSystem& system, const files::FileUrl& copy, const std::string& temporary) {
    const auto place = sidecarOf(copy).path();
    const auto text = keptSidecarText();
    try {
        const auto file = system.create(temporary);
        file->write(std::as_bytes(std::span(text)));
        file->flush();
        file->close();
        system.moveWithoutOverwrite(temporary, place);
        system.flushDirectory(copy.parent().path());
    } catch (const files::FileError& error) {
        try {
            system.remove(temporary);
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): the failure before it counts
        }
        if (error.code() == EEXIST) return;
        if (error.code() == 0) throw;
        throw files::FileError("create", place, error.code()); // the temporary name means nothing to anyone
    }
}

} // namespace lumisort::organize
