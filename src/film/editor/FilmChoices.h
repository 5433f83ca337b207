#pragma once

#include "film/editor/FilmEditorModel.h"

#include <QPointer>
#include <QStringList>

namespace lumisort::film {

/// The stock, paper and format of an editor, as indices into lists of titles, for QML. Main thread.
class FilmChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY changed)
    Q_PROPERTY(QStringList stocks READ stocks CONSTANT)
    Q_PROPERTY(QStringList papers READ papers CONSTANT)
    Q_PROPERTY(QStringList formats READ formats CONSTANT)
    Q_PROPERTY(int stock READ stock WRITE setStock NOTIFY changed)
    Q_PROPERTY(int paper READ paper WRITE setPaper NOTIFY changed)
    Q_PROPERTY(int format READ format WRITE setFormat NOTIFY changed)
    Q_PROPERTY(QString profileTitle READ profileTitle NOTIFY changed)
    Q_PROPERTY(QString profileText READ profileText NOTIFY changed)

public:
    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    QStringList stocks() const;
    QStringList papers() const;
    QStringList formats() const;
    int stock() const { return static_cast<int>(settings().stock); }
    int paper() const { return static_cast<int>(settings().paper); }
    int format() const { return static_cast<int>(settings().format); }
    void setStock(int stock);
    void setPaper(int paper);
    void setFormat(int format);
    /// What the numbers of the chosen stock rest on.
    QString profileTitle() const;
    QString profileText() const;

Q_SIGNALS:
    void changed();

private:
    FilmSettings settings() const { return editor_ ? editor_->settings() : FilmSettings(); }
    void apply(const FilmSettings& settings);

    QPointer<FilmEditorModel> editor_;
};

} // namespace lumisort::film
