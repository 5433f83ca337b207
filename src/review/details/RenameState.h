#pragma once

#include "model/LibraryModel.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <optional>

namespace lumisort::review {

/// What stands behind the sheet that renames a photo. Main thread; the model outlives it.
class RenameState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with DetailsState")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString stem READ stem WRITE setStem NOTIFY stemChanged)
    Q_PROPERTY(QString suffix READ suffix NOTIFY openChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    Q_PROPERTY(bool canRename READ canRename NOTIFY stemChanged)

public:
    explicit RenameState(model::LibraryModel& model, QObject* parent = nullptr)
        : QObject(parent), model_(model) {}

    /// Opens for a photo, with its name as it is.
    void begin(const library::Photo& photo);
    Q_INVOKABLE void cancel();
    /// Closes where the file has its new name; where it was refused, `error` says why.
    Q_INVOKABLE void rename();

    bool isOpen() const { return photo_.has_value(); }
    /// The name without its extension, as edited.
    QString stem() const { return stem_; }
    void setStem(const QString& stem);
    /// What follows the stem and stays: a dot and the extension, "" without one.
    QString suffix() const;
    QString error() const { return error_; }
    bool canRename() const { return !stem_.trimmed().isEmpty(); }

Q_SIGNALS:
    void openChanged();
    void stemChanged();
    void errorChanged();

private:
    void say(const QString& error);

    model::LibraryModel& model_;
    std::optional<library::Photo> photo_;
    QString stem_, error_;
};

} // namespace lumisort::review
