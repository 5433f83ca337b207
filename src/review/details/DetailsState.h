#pragma once

#include "review/details/PhotoFacts.h"
#include "review/details/RenameState.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace lumisort::review {

/// What the details panel shows: the photo that the library's window is at. Main thread; the model outlives
/// it.
class DetailsState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by PhotoDetailsController")
    Q_PROPERTY(bool hasPhoto READ hasPhoto NOTIFY changed)
    Q_PROPERTY(QString url READ url NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(int decision READ decision NOTIFY changed)
    Q_PROPERTY(QString dimensions READ dimensions NOTIFY changed)
    Q_PROPERTY(QString size READ size NOTIFY changed)
    Q_PROPERTY(QString format READ format NOTIFY changed)
    Q_PROPERTY(QString date READ date NOTIFY changed)
    Q_PROPERTY(QString location READ location NOTIFY changed)
    Q_PROPERTY(int thumbnailRevision READ thumbnailRevision NOTIFY thumbnailRevisionChanged)
    Q_PROPERTY(lumisort::review::RenameState* renaming READ renaming CONSTANT)

public:
    explicit DetailsState(model::LibraryModel& model, QObject* parent = nullptr);

    // What these texts say stands at PhotoFacts.

    bool hasPhoto() const { return !facts_.url.isEmpty(); }
    QString url() const { return facts_.url; }
    QString name() const { return facts_.name; }
    model::Decision::Value decision() const { return facts_.decision; }
    QString dimensions() const { return facts_.dimensions; }
    QString size() const { return facts_.size; }
    QString format() const { return facts_.format; }
    QString date() const { return facts_.date; }
    QString location() const { return facts_.location; }
    int thumbnailRevision() const { return model_.library().thumbnailRevision(); }

    RenameState* renaming() { return &renaming_; }
    /// Opens the rename sheet for the photo on show.
    Q_INVOKABLE void beginRename();

Q_SIGNALS:
    void changed();
    void thumbnailRevisionChanged();

private:
    void follow();

    model::LibraryModel& model_;
    PhotoFacts facts_;
    RenameState renaming_;
};

} // namespace lumisort::review
