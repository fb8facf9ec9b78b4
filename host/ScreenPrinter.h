/// The screen as text for a terminal.
#pragma once

#include "host/ScreenModel.h"

#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Prints what changes on the screen, and only that: the tile as a whole, of the panels and lists the lines
/// that read otherwise than before. Not for several threads at once.
class ScreenPrinter {
public:
    /// @param stream must outlive the printer
    explicit ScreenPrinter(std::ostream& stream)
        : out(stream) {}

    /// Prints what one notice did.
    /// @param changes what `model` told of the notice
    void print(const std::vector<ScreenChange>& changes, const ScreenModel& model);

private:
    /// A line of a block; a title is printed where it changes or where a line under it does.
    struct Line {
        std::string key; ///< by which the line is known when it changes
        std::string text;
        bool isTitle = false;
    };
    struct Block {
        std::string name;
        std::string heading;
        std::vector<Line> lines;
        bool isPrintedWhole = false;
        bool keepsValues = false; ///< a line that is there but empty still counts as what it was
    };
    struct Printed {
        int depth;
        std::string text;
    };

    using Texts = std::map<std::string, std::string>; ///< of lines that show, by key

    static Block tileBlock(const ScreenModel& model, const ScreenPart& tile);
    static Block panelBlock(const ScreenPart& panel);
    static Block statisticsBlock(const ScreenModel& model, const std::string& list);

    void printTile(const ScreenModel& model);
    void printChange(const ScreenChange& change, const ScreenModel& model);
    void printBlock(const Block& block);
    static Texts textsOf(const Block& block, const Texts& before);
    static std::vector<Printed> changedLines(const Block& block, const Texts& before);
    static void addGoneLines(const Texts& before, const Texts& now, std::vector<Printed>& lines);
    void printPopup(std::string_view what, const ScreenPopup& popup);
    void printLine(int depth, std::string_view text);

    std::ostream& out;
    std::map<std::string, Texts> shown; ///< what was printed last, by the block's name
};

} // namespace host
