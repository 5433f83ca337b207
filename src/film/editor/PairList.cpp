#include "film/editor/PairList.h"

namespace lumisort::film {

namespace {

struct Pair {
    FilmStock stock;
    FilmPaper paper;
};

constexpr int pairCount = static_cast<int>(allFilmStocks.size() * allFilmPapers.size());

Pair pairAt(int row) {
    const auto index = static_cast<std::size_t>(row);
    return {allFilmStocks[index / allFilmPapers.size()], allFilmPapers[index % allFilmPapers.size()]};
}

FilmSettings withPair(FilmSettings settings, const Pair& pair) {
    settings.stock = pair.stock;
    settings.paper = pair.paper;
    return settings;
}

} // namespace

PairList::PairList()
    : pictures_(pairCount),
      render_(
          CoalescedRender<int>::Running::isCancelled,
          [this](const int& row, std::stop_token stop) {
              return editor_->services().draft(editor_->photo(), withPair(editor_->settings(), pairAt(row)),
                                               longEdge, std::move(stop));
          },
          [this](const int& row, const QImage& picture, double) {
              pictures_[static_cast<std::size_t>(row)] = picture;
              Q_EMIT dataChanged(index(row), index(row), {PictureRole});
              next_ = row + 1;
              QMetaObject::invokeMethod(this, &PairList::renderNext, Qt::QueuedConnection);
          }) {}

void PairList::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    render_.cancel();
    beginResetModel();
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_)
        connect(editor_, &FilmEditorModel::settingsChanged, this,
                [this] { Q_EMIT dataChanged(index(0), index(pairCount - 1), {CurrentRole}); });
    endResetModel();
    Q_EMIT editorChanged();
}

void PairList::setActive(bool active) {
    if (active_ == active) return;
    active_ = active;
    render_.cancel();
    if (active_) {
        pictures_.assign(pairCount, {});
        Q_EMIT dataChanged(index(0), index(pairCount - 1), {PictureRole});
        next_ = 0;
        renderNext();
    }
    Q_EMIT editorChanged();
}

void PairList::renderNext() {
    if (active_ && editor_ && next_ < pairCount) render_.request(next_);
}

int PairList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !editor_ ? 0 : pairCount;
}

QVariant PairList::data(const QModelIndex& index, int role) const {
    if (!editor_ || !index.isValid()) return {};
    const auto pair = pairAt(index.row());
    switch (role) {
    case TitleRole:
        return QString::fromUtf8(title(pair.stock)) + QStringLiteral(" · ") +
               QString::fromUtf8(title(pair.paper));
    case PictureRole:
        return pictures_[static_cast<std::size_t>(index.row())];
    case CurrentRole:
        return editor_->settings().stock == pair.stock && editor_->settings().paper == pair.paper;
    default:
        return {};
    }
}

QHash<int, QByteArray> PairList::roleNames() const {
    return {{TitleRole, "title"}, {PictureRole, "picture"}, {CurrentRole, "current"}};
}

void PairList::pick(int row) {
    if (editor_ && row >= 0 && row < pairCount)
        editor_->change(withPair(editor_->settings(), pairAt(row)), FilmEditorModel::wholeEdit);
}

} // namespace lumisort::film
