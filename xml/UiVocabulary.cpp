#include "xml/UiVocabulary.h"

#include <algorithm>

namespace {

template <class Value, std::size_t Size>
const char* literalIn(const std::array<UiLiteral<Value>, Size>& table, Value value) noexcept {
    const auto row = std::ranges::find(table, value, &UiLiteral<Value>::value);
    return row == table.end() ? nullptr : row->literal;
}

template <class Value, std::size_t Size>
Value valueIn(const std::array<UiLiteral<Value>, Size>& table, std::string_view literal,
              Value absent) noexcept {
    const auto row = std::ranges::find(table, literal, [](const UiLiteral<Value>& candidate) {
        return std::string_view(candidate.literal);
    });
    return row == table.end() ? absent : row->value;
}

} // namespace

const char* uiLiteral(UiNoticeType type) noexcept { return literalIn(uiNoticeTypes, type); }
const char* uiLiteral(UiCtrlType type) noexcept { return literalIn(uiCtrlTypes, type); }
const char* uiLiteral(UiTrayState state) noexcept { return literalIn(uiTrayStates, state); }

UiEventAttributes uiEventAttributes(UiCtrlEvent event) noexcept {
    const auto index = static_cast<std::size_t>(event);
    return index < uiCtrlEvents.size() ? uiCtrlEvents[index] : UiEventAttributes{nullptr, nullptr};
}

UiNoticeType uiNoticeTypeOf(std::string_view literal) noexcept {
    return valueIn(uiNoticeTypes, literal, UiNoticeType::Unknown);
}

UiCtrlType uiCtrlTypeOf(std::string_view literal) noexcept {
    return valueIn(uiCtrlTypes, literal, UiCtrlType::None);
}
