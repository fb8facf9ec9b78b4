#include "presentation-plugin/ErrorPopupState.h"

ErrorPopupState::Shown ErrorPopupState::find(const std::string& id, const std::string& title,
                                             const std::string& message) const {
    const common2::MutexLock lock(mutex);
    if (!openIds.contains(id)) {
        return Shown::No;
    }
    return shownTitle == title && shownMessage == message ? Shown::SameTexts : Shown::OtherTexts;
}

void ErrorPopupState::insert(const std::string& id, const std::string& title, const std::string& message,
                             const std::function<void()>& open) {
    const common2::MutexLock lock(mutex);
    open();
    openIds.insert(id);
    shownTitle = title;
    shownMessage = message;
}

bool ErrorPopupState::erase(const std::string& id, const std::function<void()>& close) {
    const common2::MutexLock lock(mutex);
    if (openIds.erase(id) == 0) {
        return false;
    }
    close();
    shownTitle.clear();
    shownMessage.clear();
    return true;
}
