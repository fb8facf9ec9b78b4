/// The numbered words of the UI protocol. Only the literals travel; the numbers never do.
#pragma once

#include "xml/UiWireNames.h"

#include <array>
#include <cstddef>
#include <string_view>

/// What a notice is for; the "type" of its root.
enum class UiNoticeType {
    Setup = 0,  ///< first rendering of a screen part; binds events
    Popup = 1,  ///< toast, error popup or browser popup
    Update = 2, ///< later rendering of a screen part
    Quit = 3,
    ApiLog = 4, ///< copy of a notification or an event for the host's log
    RefreshUi = 5,
    Unknown = 6, ///< a notice whose type isn't known; has no literal
    RefreshApprovalWizardUi = 7,
};

/// What a control is; its literal is the element's name.
enum class UiCtrlType {
    Label = 0,
    Button,
    AutoSizeButton,
    CheckBox,
    ComboBox,
    Popup,
    TextBox,
    PasswordBox,
    TextArea,
    RadioGroup,
    MenuItem,
    TrayState = 11,
    ProgressMeter,
    CloseButton = 13,
    OutlineListBox = 14,
    ListBox,
    Timer,
    WebBrowser = 17,
    WebBrowserAlias = 18, ///< shares its literal with WebBrowser
    None = 19,            ///< not a control; has no literal
};

/// The state that the tray icon shows; the "state" of a screen notice.
enum class UiTrayState {
    Error = 0,
    Attention,
    NonCompliant,
    Transition,
    Neutral,
    Trusted,
    Good = 6,
    Paused = 7,
};

/// What a user can do to a control.
enum class UiCtrlEvent {
    OnPress = 0,
    OnSelect,
    OnDoubleClick,
    OnPressEnter,
    OnOK,
    OnCancel,
    OnClose,
    OnError,
    OnBrowseEvent = 8,
};

/// A value with its word on the wire.
template <class Value>
struct UiLiteral {
    Value value;
    const char* literal;
};

/// An event's two attributes of a control: one holds the event id, the other the event's parameter.
struct UiEventAttributes {
    const char* event;
    const char* parameter;
};

inline constexpr std::array<UiLiteral<UiNoticeType>, 7> uiNoticeTypes{{
    {UiNoticeType::Setup, "setup"},
    {UiNoticeType::Popup, "popup"},
    {UiNoticeType::Update, "update"},
    {UiNoticeType::Quit, "quit"},
    {UiNoticeType::ApiLog, "apilog"},
    {UiNoticeType::RefreshUi, "refresh_ui"},
    {UiNoticeType::RefreshApprovalWizardUi, "refresh_approval_wizard_ui"},
}};
static_assert(uiNoticeTypes.back().literal);

inline constexpr std::array<UiLiteral<UiCtrlType>, 19> uiCtrlTypes{{
    {UiCtrlType::Label, "label"},
    {UiCtrlType::Button, "button"},
    {UiCtrlType::AutoSizeButton, "autosizebutton"},
    {UiCtrlType::CheckBox, "checkbox"},
    {UiCtrlType::ComboBox, "combobox"},
    {UiCtrlType::Popup, "popup"},
    {UiCtrlType::TextBox, "textbox"},
    {UiCtrlType::PasswordBox, "passwordbox"},
    {UiCtrlType::TextArea, "textarea"},
    {UiCtrlType::RadioGroup, "radiogroup"},
    {UiCtrlType::MenuItem, "menuitem"},
    {UiCtrlType::TrayState, "traystate"},
    {UiCtrlType::ProgressMeter, "progressmeter"},
    {UiCtrlType::CloseButton, "closebutton"},
    {UiCtrlType::OutlineListBox, "outlinelistbox"},
    {UiCtrlType::ListBox, "listbox"},
    {UiCtrlType::Timer, "timer"},
    {UiCtrlType::WebBrowser, "webbrowser"},
    {UiCtrlType::WebBrowserAlias, "webbrowser"},
}};
static_assert(uiCtrlTypes.size() == static_cast<std::size_t>(UiCtrlType::None) && uiCtrlTypes.back().literal);

/// In the order of the protocol, in which "Paused" stands before "Neutral".
inline constexpr std::array<UiLiteral<UiTrayState>, 8> uiTrayStates{{
    {UiTrayState::Error, "Error"},
    {UiTrayState::Attention, "Attention"},
    {UiTrayState::NonCompliant, "NonCompliant"},
    {UiTrayState::Transition, "Transition"},
    {UiTrayState::Paused, "Paused"},
    {UiTrayState::Neutral, "Neutral"},
    {UiTrayState::Trusted, "Trusted"},
    {UiTrayState::Good, "Good"},
}};
static_assert(uiTrayStates.back().literal);

/// By the value of `UiCtrlEvent`.
inline constexpr std::array<UiEventAttributes, 9> uiCtrlEvents{{
    {wire::OnPress, wire::OnPressID},
    {wire::OnSelect, wire::OnSelectID},
    {wire::OnDoubleClick, wire::OnDoubleClickID},
    {wire::OnPressEnter, wire::OnPressEnterID},
    {wire::OnOK, wire::OnOKID},
    {wire::OnCancel, wire::OnCancelID},
    {wire::OnClose, wire::OnCloseID},
    {wire::OnError, wire::OnErrorID},
    {wire::OnBrowseEvent, wire::OnBrowseEventID},
}};
static_assert(uiCtrlEvents.size() == static_cast<std::size_t>(UiCtrlEvent::OnBrowseEvent) + 1);
static_assert(uiCtrlEvents.back().event);

/// The literal of a value; null where it has none.
const char* uiLiteral(UiNoticeType type) noexcept;
const char* uiLiteral(UiCtrlType type) noexcept;
const char* uiLiteral(UiTrayState state) noexcept;

/// The attributes of an event; both null for a value that is no event.
UiEventAttributes uiEventAttributes(UiCtrlEvent event) noexcept;

/// The type of exactly that literal, `Unknown` if there is none.
UiNoticeType uiNoticeTypeOf(std::string_view literal) noexcept;
/// The type of exactly that literal, `None` if there is none. "webbrowser" is always WebBrowser.
UiCtrlType uiCtrlTypeOf(std::string_view literal) noexcept;
