/// Which error popup is on screen.
#pragma once

#include "common2/util/Mutex.h"

#include <functional>
#include <set>
#include <string>

/// The ids of the open error popups and the texts of the one on screen. The host may close a popup on any
/// thread, also from inside its own callback, while another thread opens one: so what belongs to a popup's
/// opening or closing besides its state happens in one step with it. That step must not call out.
class ErrorPopupState {
public:
    enum class Shown { No, SameTexts, OtherTexts };

    /// Whether the popup of that id is open, and with these texts.
    Shown find(const std::string& id, const std::string& title, const std::string& message) const;

    /// Makes the popup an open one, in one step with `open`.
    void insert(const std::string& id, const std::string& title, const std::string& message,
                const std::function<void()>& open);

    /// Makes the popup a closed one, in one step with `close`, which is left out where it is not open.
    /// @return whether it was open
    bool erase(const std::string& id, const std::function<void()>& close);

private:
    mutable common2::Mutex mutex;
    std::set<std::string> openIds COMMON2_GUARDED_BY(mutex);
    std::string shownTitle COMMON2_GUARDED_BY(mutex);
    std::string shownMessage COMMON2_GUARDED_BY(mutex);
};
