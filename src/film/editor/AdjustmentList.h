#pragma once

#include "film/editor/Adjustment.h"
#include "film/editor/FilmEditorModel.h"

#include <QAbstractListModel>
#include <QPointer>

namespace lumisort::film {

/// The sliders of one section with their present values, for QML. Main thread.
class AdjustmentList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY editorChanged)
    Q_PROPERTY(Section section READ section WRITE setSection NOTIFY editorChanged)
    Q_PROPERTY(bool isDefault READ isDefault NOTIFY valuesChanged)

public:
    enum Section { Light, Print, GrainAndHalation };
    Q_ENUM(Section)
    enum Role { TitleRole = Qt::UserRole, HelpRole, FromRole, ToRole, StepRole, ValueRole, TextRole };

    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    Section section() const { return section_; }
    void setSection(Section section);
    /// Every value of the section is that of a new edit.
    bool isDefault() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Moves a slider; the value snaps to a step.
    Q_INVOKABLE void set(int row, double value);
    /// Takes a typed value; false where it is no number.
    Q_INVOKABLE bool type(int row, const QString& text);
    Q_INVOKABLE void reset(int row);
    Q_INVOKABLE void resetSection();

Q_SIGNALS:
    void editorChanged();
    void valuesChanged();

private:
    std::vector<const Adjustment*> rows() const;
    void settingsChanged();

    QPointer<FilmEditorModel> editor_;
    Section section_ = Light;
};

} // namespace lumisort::film
