/// What is asked of the module's speed, and how it stands.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// What one step of the named work costs, in whatever is measured.
using Cost = std::function<double(const std::string& work)>;

/// What a row's figure is made of.
enum class Measured { Instructions, Time, Allocations };

struct Row {
    std::string_view work;
    std::string_view unit; ///< what the figure is told in: a yardstick, or what is counted
    double must;           ///< the largest figure that will do
    double aim;
    Measured measured;
    double (*figure)(const Cost&);
    bool isQuick; ///< counted in a moment, so that the check can do it
};

const std::vector<Row>& rows();

/// Prints every row with its figure, and the module's footprint.
void printTable();

/// Counts the quick rows, and prints a line for each that is worse than it must be by more than 5 %.
/// @return whether there is none
bool check();

} // namespace bench
