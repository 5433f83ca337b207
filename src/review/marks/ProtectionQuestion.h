#pragma once

#include "model/LibraryModel.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <functional>
#include <vector>

namespace lumisort::review {

/// The question that comes before photos of protected folders are skipped: one for all photos of a mark.
/// Main thread; the model outlives it.
class ProtectionQuestion : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the history of marks")
    Q_PROPERTY(bool open READ open NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString reason READ reason NOTIFY changed)
    Q_PROPERTY(int others READ others NOTIFY changed)

public:
    enum Answer {
        SkipNone,
        SkipOthers, ///< the photos that are not protected
        SkipAll,
    };
    Q_ENUM(Answer)

    using Photos = std::vector<library::Photo>;
    using Skip = std::function<void(const Photos&)>;

    explicit ProtectionQuestion(const model::LibraryModel& model, QObject* parent = nullptr);

    /// Skips the photos at once where none is protected, and with the answer else. A photo that is skipped
    /// already is not asked about. A question that was open is answered SkipNone.
    void ask(const Photos& photos, Skip skip);
    Q_INVOKABLE void answer(lumisort::review::ProtectionQuestion::Answer answer);

    bool open() const { return !photos_.empty(); }
    QString title() const;
    /// Which folders protect the photos.
    QString reason() const;
    /// How many of the photos are not protected.
    int others() const { return static_cast<int>(photos_.size()) - asked_; }

Q_SIGNALS:
    void changed();

private:
    bool isAskedAbout(const library::Photo& photo) const;

    const model::LibraryModel& model_;
    Photos photos_; ///< of the mark that waits; none while no question is open
    int asked_ = 0; ///< how many of them are protected
    Skip skip_;
};

} // namespace lumisort::review
