#include "review/PhotoCursor.h"

#include <algorithm>

namespace lumisort::review {

using library::Photo;
using model::LibraryModel;

PhotoCursor::PhotoCursor(LibraryModel& model, WindowState& window, const SimilarRows& groups)
    : model_(model), window_(window), groups_(groups) {
    const auto start = [this] { place(-1); };
    connect(&window, &WindowState::sectionChanged, this, start);
    connect(&window.photos(), &QAbstractItemModel::rowsInserted, this, &PhotoCursor::follow);
    connect(&window.photos(), &QAbstractItemModel::rowsRemoved, this, &PhotoCursor::follow);
    connect(&window.photos(), &QAbstractItemModel::modelReset, this, &PhotoCursor::follow);
    connect(&groups, &SimilarRows::changed, this, &PhotoCursor::follow);
}

bool PhotoCursor::inGroups() const {
    return window_.section() == model::Section::similar;
}

int PhotoCursor::count() const {
    return static_cast<int>(inGroups() ? groups_.layout().size() : window_.photos().rows().size());
}

std::optional<Photo> PhotoCursor::at(int position) const {
    if (position < 0 || position >= count()) return std::nullopt;
    const auto index = static_cast<std::size_t>(position);
    return inGroups() ? groups_.photo(index) : model_.library().photos()[window_.photos().rows()[index]];
}

int PhotoCursor::find(const files::FileUrl& url) const {
    if (!inGroups()) {
        const auto row = model_.library().row(url);
        const auto& rows = window_.photos().rows();
        const auto place = row ? std::ranges::lower_bound(rows, *row) : rows.end();
        return place != rows.end() && *place == *row ? static_cast<int>(place - rows.begin()) : -1;
    }
    for (int position = 0; position < count(); ++position)
        if (groups_.photo(static_cast<std::size_t>(position)).url == url) return position;
    return -1;
}

void PhotoCursor::place(int position) {
    anchor_ = position;
    const auto photo = at(position);
    url_ = photo ? std::optional(photo->url) : std::nullopt;
    if (std::exchange(position_, position) != position) Q_EMIT positionChanged();
}

void PhotoCursor::follow() {
    if (!url_) return;
    if (const auto photo = at(position_); photo && photo->url == *url_) return;
    const int found = find(*url_);
    place(found >= 0 ? found : std::min(position_, count() - 1));
}

void PhotoCursor::setColumns(int columns) {
    columns_ = static_cast<std::size_t>(std::max(columns, 1));
}

void PhotoCursor::go(int position, bool extend) {
    const int from = anchor_;
    place(position);
    if (!extend || from < 0) return;
    anchor_ = from;
    selectRange(true);
}

void PhotoCursor::move(int photos, int rows, bool extend) {
    const int total = count();
    if (total == 0) return;
    if (position_ < 0) return go(0, false);
    int target = std::clamp(position_ + photos, 0, total - 1);
    if (rows != 0) {
        const auto size = static_cast<std::size_t>(total);
        const auto layout = inGroups() ? groups_.layout() : GridLayout({size}, columns_);
        target = static_cast<int>(layout.moved(static_cast<std::size_t>(position_), rows));
    }
    go(target, extend);
}

void PhotoCursor::moveToEnd(bool first, bool extend) {
    if (count() > 0) go(first ? 0 : count() - 1, extend);
}

void PhotoCursor::selectRange(bool replace) {
    auto selected = replace ? std::unordered_set<files::FileUrl>{} : model_.selection().selected();
    const auto [first, last] = std::minmax(anchor_, position_);
    for (int position = std::max(first, 0); position <= last; ++position) selected.insert(at(position)->url);
    model_.selection().set(std::move(selected), url_);
}

void PhotoCursor::toggle() {
    if (const auto photo = current()) model_.selection().toggle(*photo);
}

void PhotoCursor::selectAll() {
    std::unordered_set<files::FileUrl> all;
    for (int position = 0; position < count(); ++position) all.insert(at(position)->url);
    model_.selection().set(std::move(all), url_);
}

void PhotoCursor::open() {
    if (const auto photo = current()) window_.openFullscreen(*photo);
}

void PhotoCursor::click(int position, bool extend) {
    const int from = anchor_;
    place(position);
    if (!extend || from < 0) return toggle();
    anchor_ = from;
    selectRange(false);
}

void PhotoCursor::doubleClick(int position) {
    place(position);
    toggle();
    open();
}

void PhotoCursor::seek(const QString& text) {
    const int total = count();
    for (int step = 0; step < total && !text.isEmpty(); ++step) {
        const int position = (std::max(position_, 0) + step) % total;
        if (QString::fromUtf8(at(position)->url.name()).startsWith(text, Qt::CaseInsensitive))
            return place(position);
    }
}

} // namespace lumisort::review
