#include "host/ScreenModel.h"

#include "host/HostError.h"

#include <algorithm>

namespace host {
namespace {

using Kind = ScreenChange::Kind;

constexpr std::string_view tileStatusId = "simple_status";

bool isControl(const NoticeElement& element) {
    return element.name == "label" || element.name == "button" || element.name == "webbrowser" ||
           element.name == "closebutton";
}

/// Writes the element's attributes over those that the control has.
void write(ScreenControl& control, const NoticeElement& element) {
    control.element = element.name;
    for (const auto& [key, value] : element.attributes) {
        control.attributes.insert_or_assign(key, value);
    }
}

ScreenControl controlOf(const NoticeElement& element) {
    ScreenControl control;
    write(control, element);
    return control;
}

StatisticsRow rowOf(const NoticeElement& element) {
    StatisticsRow row{std::string(element.attribute("id")), {}};
    for (const NoticeElement& column : element.children) {
        if (column.name == "listrowcolumn") {
            row.columns.emplace_back(column.attribute("label"));
        }
    }
    return row;
}

StatisticsGroup groupOf(const NoticeElement& element) {
    StatisticsGroup group{std::string(element.attribute("id")), {}, {}};
    for (const NoticeElement& child : element.children) {
        if (child.name == "listrowcolumn") {
            group.title = child.attribute("label");
        } else if (child.name == "listrow") {
            group.rows.push_back(rowOf(child));
        }
    }
    return group;
}

/// Gathers a popup's texts and controls, wherever its layout puts them.
void gather(const NoticeElement& element, ScreenPopup& popup) {
    for (const NoticeElement& child : element.children) {
        if (child.name == "title") {
            popup.title = child.attribute("value");
        } else if (child.name == "text" || child.name == "label") {
            popup.texts.emplace_back(child.attribute("value"));
        } else if (isControl(child)) {
            popup.controls.push_back(controlOf(child));
        } else {
            gather(child, popup);
        }
    }
}

ScreenPopup popupOf(const NoticeElement& element) {
    ScreenPopup popup{
        std::string(element.attribute("id")), std::string(element.attribute("type")), {}, {}, {}};
    gather(element, popup);
    return popup;
}

} // namespace

std::string_view ScreenControl::attribute(std::string_view key) const {
    const auto found = attributes.find(key);
    return found == attributes.end() ? std::string_view() : found->second;
}

const ScreenControl* ScreenPart::find(std::string_view id) const {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const ScreenControl& control) { return control.id() == id; });
    return found == controls.end() ? nullptr : &*found;
}

bool ScreenPart::isTile() const { return find(tileStatusId) != nullptr; }

std::vector<ScreenChange> ScreenModel::apply(std::string_view xml) {
    Changes changes;
    try {
        const NoticeElement notice = parseNotice(xml);
        const std::string_view type = notice.attribute("type");
        if (type == "setup" || type == "update") {
            applyScreen(notice, changes);
        } else if (const NoticeElement* popup = notice.child("popup"); type == "popup" && popup != nullptr) {
            applyPopup(*popup, changes);
        } else if (type != "apilog") {
            changes.push_back({Kind::Unreadable, 0, "a notice of type \"" + std::string(type) + "\""});
        }
    } catch (const HostError& fault) {
        changes.push_back({Kind::Unreadable, 0, fault.what()});
    }
    return changes;
}

void ScreenModel::applyScreen(const NoticeElement& notice, Changes& changes) {
    applyControls(notice, notice.attribute("type") == "setup", changes);
    applyTray(notice, changes);
    for (const NoticeElement& element : notice.children) {
        if (element.name == "outlinelistbox") {
            applyList(element, changes);
        } else if (element.name == "log") {
            changes.push_back({Kind::History, 0, std::string(element.attribute("messagehistory"))});
        } else if (element.name == "application") {
            const bool isShown = element.attribute("show") != "false";
            changes.push_back({isShown ? Kind::WindowShown : Kind::WindowHidden});
        }
    }
}

void ScreenModel::applyControls(const NoticeElement& notice, bool isSetup, Changes& changes) {
    std::vector<const NoticeElement*> elements;
    for (const NoticeElement& element : notice.children) {
        if (isControl(element)) {
            elements.push_back(&element);
        }
    }
    if (elements.empty()) {
        return;
    }
    const std::size_t index = partFor(elements, isSetup);
    ScreenPart& part = ownParts[index];
    for (const NoticeElement* element : elements) {
        const auto known = std::find_if(part.controls.begin(), part.controls.end(), [&](const auto& control) {
            return control.id() == element->attribute("id");
        });
        if (known == part.controls.end()) {
            part.controls.push_back(controlOf(*element));
        } else {
            write(*known, *element);
        }
    }
    changes.push_back({Kind::Part, index});
}

/// The part that holds the first of the controls that is known already. A setup lays its part out anew.
std::size_t ScreenModel::partFor(const std::vector<const NoticeElement*>& elements, bool isSetup) {
    for (const NoticeElement* element : elements) {
        const auto holds = [&](const ScreenPart& part) {
            return part.find(element->attribute("id")) != nullptr;
        };
        const auto found = std::find_if(ownParts.begin(), ownParts.end(), holds);
        if (found != ownParts.end()) {
            if (isSetup) {
                found->controls.clear();
            }
            return static_cast<std::size_t>(found - ownParts.begin());
        }
    }
    ownParts.emplace_back();
    return ownParts.size() - 1;
}

void ScreenModel::applyTray(const NoticeElement& notice, Changes& changes) {
    const NoticeElement* text = notice.child("traystate");
    if (text == nullptr && !notice.has("state")) {
        return;
    }
    if (text != nullptr) {
        ownTrayText = text->attribute("value");
    }
    if (notice.has("state")) {
        ownTrayState = notice.attribute("state");
    }
    changes.push_back({Kind::TrayState});
}

void ScreenModel::applyList(const NoticeElement& list, Changes& changes) {
    StatisticsList groups;
    for (const NoticeElement& element : list.children) {
        if (element.name == "listgroup") {
            groups.push_back(groupOf(element));
        }
    }
    std::string id(list.attribute("id"));
    ownStatistics.insert_or_assign(id, std::move(groups));
    changes.push_back({Kind::Statistics, 0, std::move(id)});
}

void ScreenModel::applyPopup(const NoticeElement& element, Changes& changes) {
    ScreenPopup popup = popupOf(element);
    const auto open = ownPopups.find(popup.id);
    if (element.attribute("dispose") == "true") {
        if (open != ownPopups.end()) {
            changes.push_back({Kind::PopupClosed, 0, {}, std::move(open->second)});
            ownPopups.erase(open);
        }
    } else if (popup.type == "notification") {
        changes.push_back({Kind::Toast, 0, {}, std::move(popup)});
    } else if (element.children.empty()) {
        if (open != ownPopups.end()) {
            changes.push_back({Kind::PopupRaised, 0, {}, open->second});
        }
    } else {
        ownPopups.insert_or_assign(popup.id, popup);
        changes.push_back({Kind::PopupOpened, 0, {}, std::move(popup)});
    }
}

} // namespace host
