#pragma once

#include "model/LibraryModel.h"

#include <QtQml/qqml.h>

#include <QObject>

// The library's objects, whose room knows no QML, as types that views can name the members of.
namespace lumisort::review {

struct ForeignLibrary {
    Q_GADGET
    QML_FOREIGN(lumisort::model::Library)
    QML_ANONYMOUS
};

struct ForeignExclusiveTask {
    Q_GADGET
    QML_FOREIGN(lumisort::model::ExclusiveTask)
    QML_ANONYMOUS
};

struct ForeignFolderImport {
    Q_GADGET
    QML_FOREIGN(lumisort::model::FolderImport)
    QML_ANONYMOUS
};

struct ForeignMatchSearch {
    Q_GADGET
    QML_FOREIGN(lumisort::model::MatchSearch)
    QML_ANONYMOUS
};

struct ForeignSelection {
    Q_GADGET
    QML_FOREIGN(lumisort::model::Selection)
    QML_ANONYMOUS
};

} // namespace lumisort::review
