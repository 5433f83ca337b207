#include "review/actions/ActionTable.h"

namespace lumisort::review {

namespace {

constexpr auto grid = static_cast<unsigned>(ActionSet::Scope::grid);
constexpr auto photo = static_cast<unsigned>(ActionSet::Scope::photo);
constexpr auto compare = static_cast<unsigned>(ActionSet::Scope::compare);
constexpr auto fullScreen = static_cast<unsigned>(ActionSet::Scope::fullScreen);
constexpr auto viewer = compare | fullScreen;
constexpr bool repeats = true;

constexpr ActionRow table[] = {
    {ActionSet::AddFolder, "Add Folder", "folder-new", "Ctrl+O", grid},
    {ActionSet::Organize, "Import", "document-import", "Ctrl+Shift+I", grid},
    {ActionSet::FindMatches, "Find Matches", "edit-duplicate", "Ctrl+M", grid},
    {ActionSet::Stop, "Cancel", "", "", grid},
    {ActionSet::Keep, "Import", "checkmark", "Ctrl+K", grid | photo | viewer},
    {ActionSet::Skip, "Skip", "flag", "Ctrl+D", grid | photo | viewer},
    {ActionSet::ClearMark, "Clear Mark", "", "Ctrl+U", grid | photo | viewer},
    {ActionSet::ClearChoice, "Clear Choice", "window-close", "Ctrl+Shift+A", grid},
    {ActionSet::Undo, "Undo", "edit-undo", "Ctrl+Z", grid | viewer},
    {ActionSet::Redo, "Redo", "edit-redo", "Ctrl+Shift+Z", grid | viewer},
    {ActionSet::Details, "Show Details", "documentinfo", "Ctrl+I", grid | photo},
    {ActionSet::Compare, "Compare", "view-split-left-right", "Ctrl+E", grid},
    {ActionSet::Film, "Film", "view-filter", "", grid | photo},
    {ActionSet::ExportFilm, "Export Film…", "document-open-folder", "Ctrl+Shift+E", grid},
    {ActionSet::PasteFilm, "Paste Film Adjustments", "", "Ctrl+Shift+V", grid},
    {ActionSet::Search, "Search", "edit-find", "Ctrl+F", grid},
    {ActionSet::Settings, "Settings", "configure", "Ctrl+,", grid},
    {ActionSet::ShowInFileManager, "Show in File Manager", "document-open-folder", "", photo},
    {ActionSet::PreviousPhoto, "Previous photo", "go-previous", "Left", viewer, repeats},
    {ActionSet::NextPhoto, "Next photo", "go-next", "Right", viewer, repeats},
    {ActionSet::PreviousPair, "Previous Pair", "go-previous", "Alt+Left", compare, repeats},
    {ActionSet::NextPair, "Next Pair", "go-next", "Alt+Right", compare, repeats},
    {ActionSet::Fit, "Fit", "zoom-fit-best", "0", viewer},
    {ActionSet::ActualPixels, "100%", "zoom-original", "1", compare},
    {ActionSet::ZoomIn, "Zoom In", "", "+ =", viewer, repeats},
    {ActionSet::ZoomOut, "Zoom Out", "", "-", viewer, repeats},
    {ActionSet::PanLeft, "Pan Left", "", "Shift+Left", viewer, repeats},
    {ActionSet::PanRight, "Pan Right", "", "Shift+Right", viewer, repeats},
    {ActionSet::PanUp, "Pan Up", "", "Shift+Up", viewer, repeats},
    {ActionSet::PanDown, "Pan Down", "", "Shift+Down", viewer, repeats},
    {ActionSet::Close, "Close", "cross", "Esc", fullScreen},
};

} // namespace

std::span<const ActionRow> actionTable() {
    return table;
}

} // namespace lumisort::review
