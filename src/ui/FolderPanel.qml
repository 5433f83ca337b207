import QtQuick.Dialogs

FolderDialog {}
