/// Which error popup is on screen.
#pragma once

#include <mutex>
#include <set>
#include <string>

/// The ids of the open error popups and the texts of the one on screen. The host may close a popup on any
/// thread, also from inside its own callback, so each operation is atomic and none calls out.
class ErrorPopupState {
public:
    enum class Shown { No, SameTexts, OtherTexts };

    /// Whether the popup of that id is open, and with these texts.
    Shown find(const std::string& id, const std::string& title_, const std::string& message_) const {
        const std::lock_guard lock(mutex);
        if (!open.contains(id)) {
            return Shown::No;
        }
        return title == title_ && message == message_ ? Shown::SameTexts : Shown::OtherTexts;
    }

    void insert(const std::string& id, const std::string& title_, const std::string& message_) {
        const std::lock_guard lock(mutex);
        open.insert(id);
        title = title_;
        message = message_;
    }

    /// @return whether the popup was open
    bool erase(const std::string& id) {
        const std::lock_guard lock(mutex);
        if (open.erase(id) == 0) {
            return false;
        }
        title.clear();
        message.clear();
        return true;
    }

private:
    mutable std::mutex mutex;
    std::set<std::string> open;
    std::string title;
    std::string message;
};
