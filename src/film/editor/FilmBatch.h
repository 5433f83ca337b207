#pragma once

#include "film/editor/FilmEditorServices.h"

#include <QtQml/qqmlregistration.h>

#include <QCoroTask>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <vector>

namespace lumisort::film {

/// Exports several RAW photos, one after another, each with its stored adjustments, into one folder. A photo
/// that fails becomes a line and does not stop the others. Main thread; the services outlive it.
class FilmBatch : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool open READ isOpen NOTIFY changed)
    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(int finished READ finished NOTIFY changed)
    Q_PROPERTY(QString current READ current NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QString failures READ failures NOTIFY changed)
    Q_PROPERTY(QUrl folder READ folder NOTIFY changed)

public:
    explicit FilmBatch(FilmEditorServices& services, QObject* parent = nullptr);
    /// Stops a run; the photo at hand leaves no file.
    ~FilmBatch() override;

    /// Opens the sheet for these photos. Not during a run.
    void prepare(std::vector<files::FileUrl> photos);
    Q_INVOKABLE void run(const QUrl& folder);
    Q_INVOKABLE void cancel();
    /// Closes the sheet. Not during a run.
    Q_INVOKABLE void close();

    bool isOpen() const { return open_; }
    bool isRunning() const { return running_; }
    int count() const { return static_cast<int>(photos_.size()); }
    int finished() const { return finished_; }
    /// Name of the photo that is being exported.
    QString current() const { return current_; }
    /// What a run did; "" before its end.
    QString summary() const { return summary_; }
    /// One line for each photo that failed.
    QString failures() const { return failures_.join(u'\n'); }
    /// The folder of the last run.
    QUrl folder() const { return folder_; }

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> exportAll(files::FileUrl folder, std::stop_token stop);
    QCoro::Task<> exportOne(files::FileUrl photo, files::FileUrl folder, std::stop_token stop);

    FilmEditorServices& services_;
    std::vector<files::FileUrl> photos_;
    bool open_ = false, running_ = false;
    int finished_ = 0;
    QString current_, summary_;
    QStringList failures_;
    QUrl folder_;
    std::stop_source stop_;
};

} // namespace lumisort::film
