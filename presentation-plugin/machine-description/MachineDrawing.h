/// The plugin's machine drawn: the same states, regions, events, guards and actions in three notations.
///
/// All are read off the transition tables, end with a line end, and depend on nothing else: the same tables
/// give the same bytes. A guard or an exception that is a template is written like a call,
/// `enrollmentStatusIs(Started)`. Each draws the whole machine, or the one region that is named; of a region
/// that there is not, nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The names of the regions: the root's one, then those of the running machine.
std::vector<std::string> machineRegions();

/// For Graphviz: a digraph in which the running machine and each of its regions is a cluster. What a state
/// does without being left stands in its box.
std::string machineAsDot(std::string_view region = {});

/// For Mermaid: a state diagram in which the running machine is a composite state with one composite for each
/// region. What a state does without being left stands in its box.
std::string machineAsMermaid(std::string_view region = {});

/// For Markdown: a heading and a table for each region, in the tables' order, one row a line.
std::string machineAsTable(std::string_view region = {});
