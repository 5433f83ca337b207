#pragma once

#include "model/Library.h"

#include <optional>
#include <unordered_set>
#include <vector>

namespace lumisort::model {

/// The selected photos and the one in focus, to which details and keys apply. Follows renames, drives and
/// folders by itself. Main thread; the library outlives it.
class Selection : public MainThreadObject {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY changed)

public:
    explicit Selection(Library& library);

    const std::unordered_set<files::FileUrl>& selected() const { return selected_; }
    int count() const { return static_cast<int>(selected_.size()); }
    bool contains(const files::FileUrl& url) const { return selected_.contains(url); }
    const std::optional<files::FileUrl>& focused() const { return focused_; }
    /// The selected photos in library order.
    std::vector<library::Photo> picked() const;
    /// The photo in focus where it can be read, else the first selected one; none while nothing is selected.
    std::optional<library::Photo> detailPhoto() const;

    /// Selects a readable photo, or deselects it, and moves the focus to it.
    void toggle(const library::Photo& photo);
    /// Adds a readable photo and moves the focus to it. Returns false for a photo that cannot be read.
    bool add(const library::Photo& photo);
    /// Selects the readable ones of `photos` and no others; moves the focus to `focus` if it is one of them.
    void set(std::unordered_set<files::FileUrl> photos, const std::optional<files::FileUrl>& focus);
    void clear() { set({}, std::nullopt); }

Q_SIGNALS:
    void changed();

private:
    void assign(std::unordered_set<files::FileUrl> selected);
    void dropUnreadable();
    void follow(const files::FileUrl& before, const library::Photo& after);

    Library& library_;
    std::unordered_set<files::FileUrl> selected_;
    std::optional<files::FileUrl> focused_; ///< none while nothing is selected
};

} // namespace lumisort::model
