#include "film/editor/AdjustmentList.h"

#include <algorithm>

namespace lumisort::film {

std::vector<const Adjustment*> AdjustmentList::rows() const {
    std::vector<const Adjustment*> rows;
    for (const auto& adjustment : adjustments)
        if (static_cast<int>(adjustment.section) == static_cast<int>(section_)) rows.push_back(&adjustment);
    return rows;
}

void AdjustmentList::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    beginResetModel();
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_) connect(editor_, &FilmEditorModel::settingsChanged, this, &AdjustmentList::settingsChanged);
    endResetModel();
    Q_EMIT editorChanged();
    Q_EMIT valuesChanged();
}

void AdjustmentList::setSection(Section section) {
    if (section_ == section) return;
    beginResetModel();
    section_ = section;
    endResetModel();
    Q_EMIT editorChanged();
    Q_EMIT valuesChanged();
}

void AdjustmentList::settingsChanged() {
    if (const int count = rowCount()) Q_EMIT dataChanged(index(0), index(count - 1), {ValueRole, TextRole});
    Q_EMIT valuesChanged();
}

bool AdjustmentList::isDefault() const {
    return !editor_ || std::ranges::all_of(rows(), [this](const Adjustment* adjustment) {
        return editor_->settings().*adjustment->value == adjustment->defaultValue();
    });
}

int AdjustmentList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !editor_ ? 0 : static_cast<int>(rows().size());
}

QVariant AdjustmentList::data(const QModelIndex& index, int role) const {
    if (!editor_ || !index.isValid()) return {};
    const auto& adjustment = *rows().at(static_cast<std::size_t>(index.row()));
    const double value = editor_->settings().*adjustment.value;
    switch (role) {
    case TitleRole:
        return QString::fromUtf8(adjustment.title);
    case HelpRole:
        return QString::fromUtf8(adjustment.help);
    case FromRole:
        return adjustment.from;
    case ToRole:
        return adjustment.to;
    case StepRole:
        return adjustment.step;
    case ValueRole:
        return value;
    case TextRole:
        return QString::fromStdString(adjustment.text(value));
    default:
        return {};
    }
}

QHash<int, QByteArray> AdjustmentList::roleNames() const {
    return {{TitleRole, "title"}, {HelpRole, "help"},   {FromRole, "from"}, {ToRole, "to"},
            {StepRole, "step"},   {ValueRole, "value"}, {TextRole, "text"}};
}

void AdjustmentList::set(int row, double value) {
    const auto shown = rows();
    if (!editor_ || row < 0 || row >= static_cast<int>(shown.size())) return;
    const auto& adjustment = *shown[static_cast<std::size_t>(row)];
    auto settings = editor_->settings();
    settings.*adjustment.value = adjustment.snapped(value);
    editor_->change(settings, static_cast<int>(&adjustment - adjustments.data()));
}

bool AdjustmentList::type(int row, const QString& text) {
    const auto shown = rows();
    if (!editor_ || row < 0 || row >= static_cast<int>(shown.size())) return false;
    const auto value = shown[static_cast<std::size_t>(row)]->parse(text.toStdString());
    if (!value) return false;
    set(row, *value);
    editor_->seal();
    return true;
}

void AdjustmentList::reset(int row) {
    const auto shown = rows();
    if (!editor_ || row < 0 || row >= static_cast<int>(shown.size())) return;
    editor_->seal();
    set(row, shown[static_cast<std::size_t>(row)]->defaultValue());
    editor_->seal();
}

void AdjustmentList::resetSection() {
    if (!editor_) return;
    auto settings = editor_->settings();
    for (const auto* adjustment : rows()) settings.*adjustment->value = adjustment->defaultValue();
    editor_->change(settings, FilmEditorModel::wholeEdit);
}

} // namespace lumisort::film
