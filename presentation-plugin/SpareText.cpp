#include "presentation-plugin/SpareText.h"

namespace {

/// Storage above this is for a huge document only and is not kept.
constexpr std::size_t mostSpared = 256 * 1024;

} // namespace

SpareText::Loan::Loan(SpareText& lender)
    : owner(lender)
    , text(lender.spare.exchange(nullptr)) {
    if (!text) {
        text = std::make_unique<common2::TextBuffer>();
    }
}

SpareText::Loan::~Loan() {
    text->reset(mostSpared);
    text.reset(owner.spare.exchange(text.release()));
}

SpareText::~SpareText() { delete spare.load(); }
