#include "app/commandline/Json.h"

namespace lumisort::app {

void printJson(std::ostream& out, const std::function<void(json::Writer&)>& write) {
    json::Writer writer([&](std::string_view piece) { out << piece; });
    write(writer);
    writer.finish();
    out << '\n';
}

} // namespace lumisort::app
