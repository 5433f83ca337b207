#pragma once

#include "film/editor/FilmEditorModel.h"
#include "film/editor/ToneHistogram.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace lumisort::film {

/// Draws the histogram of what an editor shows. Main thread.
class HistogramItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY changed)
    Q_PROPERTY(bool original READ original WRITE setOriginal NOTIFY changed)
    Q_PROPERTY(double clippedShadows READ clippedShadows NOTIFY changed)
    Q_PROPERTY(double clippedHighlights READ clippedHighlights NOTIFY changed)

public:
    explicit HistogramItem(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    /// Of the original in place of the print.
    bool original() const { return original_; }
    void setOriginal(bool original);
    double clippedShadows() const { return histogram_.clippedShadows; }
    double clippedHighlights() const { return histogram_.clippedHighlights; }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void count();

    QPointer<FilmEditorModel> editor_;
    bool original_ = false;
    ToneHistogram histogram_;
};

} // namespace lumisort::film
