#include "similarity/report/ContactSheet.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "platform/tasks/OrderedWorkers.h"
#include "platform/text/ByteCount.h"
#include "similarity/report/HtmlText.h"
#include "similarity/report/SheetStyle.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace lumisort::similarity {
namespace {

constexpr int jpegQuality = 80;
/// Thumbnails made together; all workers wait for the last of them.
constexpr std::size_t photosPerBatch = 64;

std::string number(std::size_t value, const char* singular, const char* plural) {
    return std::to_string(value) + " " + (value == 1 ? singular : plural);
}

/// A picture as an image element, or the reason why there is none.
std::string tile(const library::Photo& photo, const ContactSheetOptions& options,
                 const std::stop_token& stop) {
    try {
        const auto bitmap = options.thumbnail ? options.thumbnail(photo.url, options.thumbnailSide, stop)
                                              : images::decoder().thumbnail(photo.url, options.thumbnailSide,
                                                                            images::Quality::fine, stop);
        return "<img loading=\"lazy\" decoding=\"async\" alt=\"\" width=\"" + std::to_string(bitmap.width()) +
               "\" height=\"" + std::to_string(bitmap.height()) + "\" src=\"data:image/jpeg;base64," +
               base64(images::decoder().encodeJpeg(bitmap, jpegQuality)) + "\">";
    } catch (const images::ImageError& error) {
        return htmlText(error.what());
    }
}

std::string details(const library::Photo& photo) {
    std::string text;
    if (photo.width > 0 && photo.height > 0)
        text = std::to_string(photo.width) + " × " + std::to_string(photo.height) + ", ";
    return text + text::byteCount(std::max<std::int64_t>(photo.bytes, 0));
}

/// "0.412" for a photo at a distance, a badge for the first photo where the others have distances.
std::string mark(const SimilarityGroup& group, const library::Photo& photo) {
    if (group.distances.empty()) return {};
    if (photo.url == group.anchor.url) return "<span class=\"mark anchor\">Anchor</span>";
    const auto distance = group.distances.find(photo.url);
    if (distance == group.distances.end()) return {};
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", static_cast<double>(distance->second));
    return "<span class=\"mark\" title=\"Distance from the anchor\">" + std::string(text) + "</span>";
}

std::string figure(const SimilarityGroup& group, const library::Photo& photo, const std::string& picture) {
    const std::string path = htmlText(photo.url.path());
    const std::string folder = htmlText(photo.url.parent().path());
    const std::string link = htmlText(photo.url.string());
    return "<figure><a class=\"tile\" href=\"" + link + "\" tabindex=\"-1\">" + picture + "</a><figcaption>" +
           mark(group, photo) + "<a href=\"" + link + "\" title=\"" + path + "\"><bdi>" +
           htmlText(photo.url.name()) + "</bdi></a><div>" + details(photo) + "</div><div title=\"" + folder +
           "\"><bdi>" + folder + "</bdi></div></figcaption></figure>\n";
}

std::string pageHead(const std::vector<SimilarityGroup>& groups, const ContactSheetOptions& options) {
    std::size_t photos = 0;
    for (const auto& group : groups) photos += group.photos.size();
    const std::string title = htmlText(options.title);
    std::string summary = options.subtitle.empty() ? "" : htmlText(options.subtitle) + " · ";
    summary += number(groups.size(), "group", "groups") + " · " + number(photos, "photo", "photos");
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
           title + "</title>\n<style>" + std::string(sheetStyle) + "</style></head><body>\n<header><h1>" +
           title + "</h1><p>" + summary + "</p></header>\n";
}

std::string groupHead(std::size_t number_, const SimilarityGroup& group) {
    return "<section><h2>Group " + std::to_string(number_) + "<span>" +
           number(group.photos.size(), "photo", "photos") + "</span></h2>\n<div class=\"photos\">\n";
}

std::string groupFoot(const SimilarityGroup& group, std::size_t shown) {
    std::string more;
    if (shown < group.photos.size())
        more = "<p class=\"more\">and " + number(group.photos.size() - shown, "more photo", "more photos") +
               "</p>";
    return "</div>" + more + "</section>\n";
}

std::string pageFoot(const ContactSheetOptions& options) {
    std::string foot;
    if (!options.failures.empty()) {
        foot = "<details><summary>" + number(options.failures.size(), "photo", "photos") +
               " left out</summary><ul>\n";
        for (const auto& line : options.failures) foot += "<li>" + htmlText(line) + "</li>\n";
        foot += "</ul></details>\n";
    }
    return foot + "</body></html>\n";
}

} // namespace

void writeContactSheet(const std::vector<SimilarityGroup>& groups, const ContactSheetOptions& options,
                       const PageSink& out, const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    out(pageHead(groups, options));
    if (groups.empty()) out("<p class=\"empty\">No photos match.</p>\n");

    std::vector<std::pair<std::size_t, std::size_t>> shown; // group and photo, in the order of the page
    for (std::size_t group = 0; group < groups.size(); ++group)
        for (std::size_t photo = 0; photo < std::min(groups[group].photos.size(), options.mostPhotosOfGroup);
             ++photo)
            shown.emplace_back(group, photo);

    for (std::size_t begin = 0; begin < shown.size(); begin += photosPerBatch) {
        const auto tiles = tasks::orderedWorkers(
            std::min(photosPerBatch, shown.size() - begin), options.width,
            [&](std::size_t offset, const std::stop_token& inner) {
                const auto& [group, photo] = shown[begin + offset];
                return tile(groups[group].photos[photo], options, inner);
            },
            [](std::size_t) {}, stop);
        for (std::size_t offset = 0; offset < tiles.size(); ++offset) {
            const std::size_t place = begin + offset;
            const auto& [index, photo] = shown[place];
            const auto& group = groups[index];
            if (photo == 0) out(groupHead(index + 1, group));
            out(figure(group, group.photos[photo], tiles[offset]));
            if (place + 1 == shown.size() || shown[place + 1].first != index)
                out(groupFoot(group, photo + 1));
        }
    }
    out(pageFoot(options));
}

} // namespace lumisort::similarity
