#include "film/editor/FilmChoices.h"

#include "film/optics/StockProfile.h"

namespace lumisort::film {

namespace {

template <class Values>
QStringList titles(const Values& values) {
    QStringList list;
    for (const auto value : values) list += QString::fromUtf8(title(value));
    return list;
}

} // namespace

void FilmChoices::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_) connect(editor_, &FilmEditorModel::settingsChanged, this, &FilmChoices::changed);
    Q_EMIT changed();
}

QStringList FilmChoices::stocks() const {
    return titles(allFilmStocks);
}

QStringList FilmChoices::papers() const {
    return titles(allFilmPapers);
}

QStringList FilmChoices::formats() const {
    return titles(allFilmFormats);
}

void FilmChoices::apply(const FilmSettings& settings) {
    if (editor_) editor_->change(settings, FilmEditorModel::wholeEdit);
}

void FilmChoices::setStock(int stock) {
    auto changed = settings();
    changed.stock = allFilmStocks.at(static_cast<std::size_t>(stock));
    apply(changed);
}

void FilmChoices::setPaper(int paper) {
    auto changed = settings();
    changed.paper = allFilmPapers.at(static_cast<std::size_t>(paper));
    apply(changed);
}

void FilmChoices::setFormat(int format) {
    auto changed = settings();
    changed.format = allFilmFormats.at(static_cast<std::size_t>(format));
    apply(changed);
}

QString FilmChoices::profileTitle() const {
    return stockProfile(settings().stock).isMeasured() ? QStringLiteral("Research profile")
                                                       : QStringLiteral("Simulated materials");
}

QString FilmChoices::profileText() const {
    return QString::fromStdString(stockProfile(settings().stock).summary);
}

} // namespace lumisort::film
