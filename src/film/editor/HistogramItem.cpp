#include "film/editor/HistogramItem.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {

namespace {

/// The ends hold what is clipped and would dwarf the rest; the marks tell of them.
std::uint32_t highest(const ToneHistogram::Counts& counts) {
    return *std::max_element(counts.begin() + 1, counts.end() - 1);
}

QPolygonF outline(const ToneHistogram::Counts& counts, double most, QSizeF size) {
    QPolygonF line;
    line << QPointF(0, size.height());
    for (int level = 0; level < ToneHistogram::levels; ++level) {
        // The square root keeps small counts visible beside a large even area.
        const double share = std::sqrt(std::min(1.0, counts[static_cast<std::size_t>(level)] / most));
        line << QPointF(size.width() * level / (ToneHistogram::levels - 1), size.height() * (1 - share));
    }
    line << QPointF(size.width(), size.height());
    return line;
}

} // namespace

void HistogramItem::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_) {
        connect(editor_, &FilmEditorModel::previewChanged, this, &HistogramItem::count);
        connect(editor_, &FilmEditorModel::draftChanged, this, &HistogramItem::count);
    }
    count();
}

void HistogramItem::setOriginal(bool original) {
    if (std::exchange(original_, original) != original) count();
}

void HistogramItem::count() {
    histogram_ = {};
    if (editor_ && editor_->preview()) {
        const auto& preview = *editor_->preview();
        histogram_ = ToneHistogram::of(original_                   ? preview.original
                                       : editor_->draft().isNull() ? preview.film
                                                                   : editor_->draft());
    }
    Q_EMIT changed();
    update();
}

void HistogramItem::paint(QPainter* painter) {
    const double most = std::max({highest(histogram_.red), highest(histogram_.green),
                                  highest(histogram_.blue), highest(histogram_.luminance), 1u});
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setCompositionMode(QPainter::CompositionMode_Screen);
    for (const auto& [counts, colour] : {std::pair{&histogram_.red, QColor(170, 50, 50)},
                                         {&histogram_.green, QColor(40, 140, 60)},
                                         {&histogram_.blue, QColor(50, 80, 180)}}) {
        painter->setBrush(colour);
        painter->drawPolygon(outline(*counts, most, size()));
    }
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(QColor(236, 236, 236, 180), 1));
    painter->drawPolyline(outline(histogram_.luminance, most, size()));
}

} // namespace lumisort::film
