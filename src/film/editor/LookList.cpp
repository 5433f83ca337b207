#include "film/editor/LookList.h"

#include <QCoroFuture>

namespace lumisort::film {

void LookList::setEditor(FilmEditorModel* editor) {
    if (editor_ == editor) return;
    if (editor_) disconnect(editor_, nullptr, this, nullptr);
    editor_ = editor;
    if (editor_) connect(editor_, &FilmEditorModel::settingsChanged, this, &LookList::changed);
    Q_EMIT changed();
}

QStringList LookList::names() const {
    QStringList names;
    for (const auto& look : looks_) names += QString::fromStdString(look.name);
    return names;
}

QString LookList::current() const {
    if (editor_)
        for (const auto& look : looks_)
            if (look.settings == editor_->settings()) return QString::fromStdString(look.name);
    return {};
}

const FilmLook* LookList::at(int index) const {
    const auto place = static_cast<std::size_t>(index);
    return editor_ && place < looks_.size() ? &looks_[place] : nullptr;
}

void LookList::refresh() {
    if (editor_) load();
}

void LookList::apply(int index) {
    if (const auto* look = at(index)) editor_->change(look->settings, FilmEditorModel::wholeEdit);
}

void LookList::save(const QString& name) {
    const auto trimmed = name.trimmed();
    if (editor_ && !trimmed.isEmpty())
        run(editor_->services().saveLook({trimmed.toStdString(), editor_->settings()}));
}

void LookList::remove(int index) {
    if (const auto* look = at(index)) run(editor_->services().removeLook(look->name));
}

void LookList::importFrom(const QUrl& file) {
    if (const auto url = files::FileUrl::fromString(file.toEncoded().toStdString()); url && editor_)
        import(*url);
}

void LookList::exportTo(int index, const QUrl& folder) {
    const auto* look = at(index);
    const auto url = files::FileUrl::fromString(folder.toEncoded().toStdString());
    if (look && url) write(*look, *url);
}

// A coroutine below looks whether the list and its editor are still there after each wait.

QCoro::Task<> LookList::load() {
    const QPointer<LookList> self(this);
    try {
        auto reading = editor_->services().looks();
        auto looks = co_await reading;
        if (!self) co_return;
        looks_ = std::move(looks);
        Q_EMIT changed();
    } catch (const std::exception& error) {
        if (self && editor_) editor_->tell(QString::fromUtf8(error.what()));
    }
}

QCoro::Task<> LookList::run(QFuture<void> change) {
    const QPointer<LookList> self(this);
    try {
        co_await change;
        if (self && editor_) load();
    } catch (const std::exception& error) {
        if (self && editor_) editor_->tell(QString::fromUtf8(error.what()));
    }
}

QCoro::Task<> LookList::write(FilmLook look, files::FileUrl folder) {
    const QPointer<LookList> self(this);
    try {
        auto writing = editor_->services().writeLook(std::move(look), std::move(folder));
        const auto file = co_await writing;
        if (self && editor_)
            editor_->tell(
                QStringLiteral("The look was exported as “%1”.").arg(QString::fromUtf8(file.name())));
    } catch (const std::exception& error) {
        if (self && editor_) editor_->tell(QString::fromUtf8(error.what()));
    }
}

QCoro::Task<> LookList::import(files::FileUrl file) {
    const QPointer<LookList> self(this);
    try {
        auto reading = editor_->services().readLook(file);
        const auto look = co_await reading;
        if (self && editor_) run(editor_->services().saveLook(look));
    } catch (const std::exception& error) {
        if (self && editor_) editor_->tell(QString::fromUtf8(error.what()));
    }
}

} // namespace lumisort::film
