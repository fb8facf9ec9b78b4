#include "host/ScreenPrinter.h"

#include "host/Text.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

using Kind = ScreenChange::Kind;

constexpr std::string_view titleId = "simple_tile_label";
constexpr std::string_view statusId = "simple_status";

constexpr std::pair<std::string_view, std::string_view> listHeadings[] = {
    {"overview_stat_outlinelistbox", "Statistics overview"},
    {"stat_outlinelistbox", "Statistics details"},
};

std::string headingOfList(std::string_view id) {
    for (const auto& [known, heading] : listHeadings) {
        if (known == id) {
            return std::string(heading);
        }
    }
    return "Statistics " + std::string(id);
}

/// What the user reads of a control; empty for one that does not show.
std::string textOf(const ScreenControl& control) {
    if (control.isHidden() || control.element == "closebutton") {
        return {};
    }
    if (control.element == "button") {
        std::string text("[");
        return text.append(control.attribute("label")).append(control.isDisabled() ? "] disabled" : "]");
    }
    if (control.element == "webbrowser") {
        std::string text(control.attribute("operation"));
        const std::string_view address = control.attribute("start_url");
        return address.empty() ? text : text.append(" ").append(address);
    }
    return std::string(control.attribute("value"));
}

std::string visibleButtons(const ScreenPart& part) {
    std::string buttons;
    for (const ScreenControl& control : part.controls) {
        const std::string text = control.element == "button" ? textOf(control) : std::string();
        if (!text.empty()) {
            buttons += (buttons.empty() ? "" : "  ") + text;
        }
    }
    return buttons;
}

std::string valueOf(const ScreenPart& part, std::string_view id) {
    const ScreenControl* control = part.find(id);
    return control != nullptr ? std::string(control->attribute("value")) : std::string();
}

std::string popupWord(const ScreenPopup& popup) { return popup.type == "browser" ? "Browser" : "Dialog"; }

bool touchesTile(const ScreenChange& change, const ScreenModel& model) {
    return change.kind == Kind::TrayState ||
           (change.kind == Kind::Part && model.parts()[change.index].isTile());
}

} // namespace

void ScreenPrinter::print(const std::vector<ScreenChange>& changes, const ScreenModel& model) {
    const auto isOfTile = [&](const ScreenChange& change) { return touchesTile(change, model); };
    if (std::any_of(changes.begin(), changes.end(), isOfTile)) {
        printTile(model);
    }
    for (const ScreenChange& change : changes) {
        if (!isOfTile(change)) {
            printChange(change, model);
        }
    }
    out << std::flush;
}

void ScreenPrinter::printChange(const ScreenChange& change, const ScreenModel& model) {
    switch (change.kind) {
    case Kind::Part:
        return printBlock(panelBlock(model.parts()[change.index]));
    case Kind::Statistics:
        return printBlock(statisticsBlock(model, change.text));
    case Kind::Toast:
        return printPopup("Toast", change.popup);
    case Kind::PopupOpened:
        return printPopup(popupWord(change.popup), change.popup);
    case Kind::PopupRaised:
        return printLine(0, popupWord(change.popup) + " in front: " + change.popup.title);
    case Kind::PopupClosed:
        return printLine(0, popupWord(change.popup) + " closed: " + change.popup.title);
    case Kind::WindowShown:
        return printLine(0, "The main window shows.");
    case Kind::WindowHidden:
        return printLine(0, "The main window hides.");
    case Kind::Unreadable:
        return printLine(0, "Unreadable notice: " + change.text);
    case Kind::TrayState: // belongs to the tile
    case Kind::History:   // says again what the tile or a dialog says
        return;
    }
}

ScreenPrinter::Block ScreenPrinter::tileBlock(const ScreenModel& model, const ScreenPart& tile) {
    Block block{"tile", valueOf(tile, titleId) + ": " + valueOf(tile, statusId), {}, true};
    block.lines.push_back({"buttons", visibleButtons(tile)});
    block.lines.push_back({"tray", "tray: " + model.trayState() + ", " + model.trayText()});
    return block;
}

ScreenPrinter::Block ScreenPrinter::panelBlock(const ScreenPart& panel) {
    Block block{"panel " + std::string(panel.controls.front().id()), textOf(panel.controls.front()), {}};
    for (std::size_t i = 1; i < panel.controls.size(); ++i) {
        block.lines.push_back({std::string(panel.controls[i].id()), textOf(panel.controls[i])});
    }
    return block;
}

ScreenPrinter::Block ScreenPrinter::statisticsBlock(const ScreenModel& model, const std::string& list) {
    Block block{list, headingOfList(list), {}, false, true};
    std::map<std::string, int> occurrences; // two rows may have one id
    for (const StatisticsGroup& group : model.statistics().find(list)->second) {
        block.lines.push_back({group.id, group.title, true});
        for (const StatisticsRow& row : group.rows) {
            const std::string key = group.id + " " + row.id;
            const bool hasValue = row.columns.size() > 1 && !row.columns[1].empty();
            block.lines.push_back({key + " " + std::to_string(occurrences[key]++),
                                   hasValue ? row.columns[0] + " " + row.columns[1] : std::string()});
        }
    }
    return block;
}

void ScreenPrinter::printTile(const ScreenModel& model) {
    const auto tile = std::find_if(model.parts().begin(), model.parts().end(),
                                   [](const auto& part) { return part.isTile(); });
    if (tile != model.parts().end()) {
        printBlock(tileBlock(model, *tile));
    }
}

void ScreenPrinter::printBlock(const Block& block) {
    Texts& before = shown[block.name];
    Texts now = textsOf(block, before);
    if (now == before) {
        return;
    }
    std::vector<Printed> body = changedLines(block, before);
    if (!block.isPrintedWhole) {
        addGoneLines(before, now, body);
    }
    if (!body.empty() || !block.keepsValues) {
        printLine(0, block.heading);
    }
    for (const Printed& line : body) {
        printLine(line.depth, line.text);
    }
    before = std::move(now);
}

ScreenPrinter::Texts ScreenPrinter::textsOf(const Block& block, const Texts& before) {
    Texts texts{{"", block.heading}};
    for (const Line& line : block.lines) {
        const auto old = before.find(line.key);
        if (!line.text.empty()) {
            texts.emplace(line.key, line.text);
        } else if (block.keepsValues && old != before.end()) {
            texts.insert(*old);
        }
    }
    return texts;
}

std::vector<ScreenPrinter::Printed> ScreenPrinter::changedLines(const Block& block, const Texts& before) {
    std::vector<Printed> lines;
    const Line* title = nullptr; // of the lines that follow, while it waits to be printed
    int depth = 1;
    for (const Line& line : block.lines) {
        const auto old = before.find(line.key);
        const bool isNew = old == before.end();
        const bool isChanged = block.isPrintedWhole || isNew || old->second != line.text;
        if (line.isTitle) {
            title = &line;
            depth = 2;
        }
        const bool isPrinted = isChanged && !line.text.empty() && !(line.isTitle && isNew);
        if (isPrinted && title != nullptr) {
            lines.push_back({1, std::exchange(title, nullptr)->text});
        }
        if (isPrinted && !line.isTitle) {
            lines.push_back({depth, line.text});
        }
    }
    return lines;
}

void ScreenPrinter::addGoneLines(const Texts& before, const Texts& now, std::vector<Printed>& lines) {
    for (const auto& [key, text] : before) {
        if (!now.contains(key)) {
            lines.push_back({1, "(hidden) " + text});
        }
    }
}

void ScreenPrinter::printPopup(std::string_view what, const ScreenPopup& popup) {
    printLine(0, std::string(what) + ": " + popup.title);
    for (const std::string& text : popup.texts) {
        printLine(1, text);
    }
    for (const ScreenControl& control : popup.controls) {
        printLine(1, textOf(control));
    }
}

void ScreenPrinter::printLine(int depth, std::string_view text) {
    if (!text.empty()) {
        out << std::string(static_cast<std::size_t>(2 * depth), ' ') << printable(text) << '\n';
    }
}

} // namespace host
