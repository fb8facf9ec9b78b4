/// A text buffer that is lent to whoever sends next.
#pragma once

#include "common2/data/TextBuffer.h"

#include <atomic>
#include <memory>

/// Keeps one buffer, so that sending costs no allocation. Notices are sent under the plugin's mutex and also
/// without it: whoever comes while the buffer is lent gets a new one. Any thread may borrow at any time.
class SpareText {
public:
    /// An empty buffer that goes back when the loan ends.
    class Loan {
    public:
        explicit Loan(SpareText& lender);
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;
        ~Loan();

        common2::TextBuffer& operator*() const noexcept { return *text; }
        common2::TextBuffer* operator->() const noexcept { return text.get(); }

    private:
        SpareText& owner;
        std::unique_ptr<common2::TextBuffer> text;
    };

    SpareText() = default;
    SpareText(const SpareText&) = delete;
    SpareText& operator=(const SpareText&) = delete;
    ~SpareText();

private:
    std::atomic<common2::TextBuffer*> spare{nullptr}; ///< owned; null while lent
};
