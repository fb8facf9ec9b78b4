#include "presentation-plugin/machine-description/MachineDrawing.h"

#include "presentation-plugin/machine-description/MachineDescription.h"

#include <algorithm>
#include <utility>

namespace {

using smlDescription::Region;
using smlDescription::Row;

/// "enrollmentStatusIs<EnrollmentStatus::Started>" as "enrollmentStatusIs(Started)".
std::string readable(const std::string& name) {
    const std::size_t open = name.find('<');
    if (open == std::string::npos || name.back() != '>') {
        return name;
    }
    std::string argument = name.substr(open + 1, name.size() - open - 2);
    const std::size_t qualifier = argument.rfind("::");
    argument.erase(0, qualifier == std::string::npos ? 0 : qualifier + 2);
    return name.substr(0, open).append("(").append(argument).append(")");
}

/// "event [guard] / action, action", each where there is one.
/// @param gap stands before the slash: a space, or the notation's line end
std::string reaction(const Row& row, std::string_view gap = " ") {
    std::string text = readable(row.event);
    if (!row.guard.empty()) {
        text.append(" [").append(readable(row.guard)).append("]");
    }
    if (!row.action.empty()) {
        text.append(text.empty() ? "" : gap).append("/ ").append(row.action);
    }
    return text;
}

bool isInternal(const Row& row) { return row.to.empty(); }

/// The machine that a state is, or none for a state that has nothing inside.
const DescribedMachine* machineOf(const std::string& state, const std::vector<DescribedMachine>& machines) {
    const auto found = std::ranges::find(machines, state, &DescribedMachine::name);
    return found == machines.end() ? nullptr : &*found;
}

/// The whole machine, or nothing but the named region of it.
std::vector<DescribedMachine> chosen(std::string_view region) {
    std::vector<DescribedMachine> machines = describedMachines();
    if (region.empty()) {
        return machines;
    }
    for (DescribedMachine& machine : machines) {
        const auto found = std::ranges::find(machine.regions, region, &DescribedRegion::name);
        if (found != machine.regions.end()) {
            return {{std::move(machine.name), {std::move(*found)}}};
        }
    }
    return {};
}

/// Lines of text that know how deep they are.
class Lines {
public:
    void add(std::string_view line) { text.append(depth * 4, ' ').append(line).append("\n"); }
    void open(std::string_view line) {
        add(line);
        ++depth;
    }
    void close() {
        --depth;
        add("}");
    }
    void deeper() { ++depth; }
    std::string take() { return std::move(text); }

private:
    std::string text;
    std::size_t depth = 0;
};

std::string inQuotes(std::string_view text) { return std::string("\"").append(text).append("\""); }

// Graphviz.

class Dot {
public:
    explicit Dot(const std::vector<DescribedMachine>& all)
        : machines(all) {}

    std::string draw() {
        lines.open("digraph PresentationPlugin {");
        lines.add("compound=true;");
        lines.add("fontname=\"sans-serif\";");
        lines.add("node [shape=box, style=rounded, fontname=\"sans-serif\"];");
        lines.add("edge [fontname=\"sans-serif\", fontsize=10];");
        drawRegion(machines.front().regions.front());
        lines.close();
        return lines.take();
    }

private:
    void drawRegion(const DescribedRegion& region) {
        const std::string start = std::string("start_").append(region.name);
        lines.add(inQuotes(start).append(" [shape=point];"));
        for (const std::string& state : region.table.states) {
            drawState(state, region.table);
        }
        lines.add(edge(start, region.table.initial, ""));
        for (const Row& row : region.table.rows) {
            if (!isInternal(row)) {
                lines.add(edge(row.from, row.to, reaction(row, "\\n")));
            }
        }
    }

    void drawState(const std::string& state, const Region& region) {
        if (const DescribedMachine* inner = machineOf(state, machines)) {
            openCluster(inner->name, inner->name);
            for (const DescribedRegion& part : inner->regions) {
                openCluster(part.name, part.name);
                drawRegion(part);
                lines.close();
            }
            lines.close();
            return;
        }
        std::string label = state;
        for (const Row& row : region.rows) {
            if (row.from == state && isInternal(row)) {
                label.append("\\n").append(reaction(row));
            }
        }
        lines.add(inQuotes(state).append(" [label=").append(inQuotes(label)).append("];"));
    }

    void openCluster(const std::string& name, const std::string& label) {
        lines.open(std::string("subgraph \"cluster_").append(name).append("\" {"));
        lines.add(std::string("label=").append(inQuotes(label)).append(";"));
    }

    /// An edge at a machine touches its frame; Graphviz wants a node inside for that.
    std::string edge(const std::string& from, const std::string& to, const std::string& label) const {
        std::string text = inQuotes(nodeOf(from)).append(" -> ").append(inQuotes(nodeOf(to)));
        text.append(" [label=").append(inQuotes(label));
        if (machineOf(from, machines)) {
            text.append(", ltail=").append(inQuotes(std::string("cluster_").append(from)));
        }
        if (machineOf(to, machines)) {
            text.append(", lhead=").append(inQuotes(std::string("cluster_").append(to)));
        }
        return text.append("];");
    }

    const std::string& nodeOf(const std::string& state) const {
        const DescribedMachine* inner = machineOf(state, machines);
        return inner ? inner->regions.front().table.initial : state;
    }

    const std::vector<DescribedMachine>& machines;
    Lines lines;
};

// Mermaid.

class Mermaid {
public:
    explicit Mermaid(const std::vector<DescribedMachine>& all)
        : machines(all) {}

    std::string draw() {
        lines.add("stateDiagram-v2");
        lines.deeper();
        drawRegion(machines.front().regions.front().table);
        return lines.take();
    }

private:
    void drawRegion(const Region& region) {
        for (const std::string& state : region.states) {
            drawState(state, region);
        }
        lines.add(std::string("[*] --> ").append(region.initial));
        for (const Row& row : region.rows) {
            if (!isInternal(row)) {
                drawArrow(row);
            }
        }
    }

    void drawArrow(const Row& row) {
        std::string line = row.from;
        line.append(" --> ").append(row.to);
        const std::string label = reaction(row, "<br>");
        lines.add(label.empty() ? line : line.append(" : ").append(label));
    }

    void drawState(const std::string& state, const Region& region) {
        if (const DescribedMachine* inner = machineOf(state, machines)) {
            lines.open(std::string("state ").append(state).append(" {"));
            for (const DescribedRegion& part : inner->regions) {
                lines.open(std::string("state ").append(part.name).append(" {"));
                drawRegion(part.table);
                lines.close();
                if (&part != &inner->regions.back()) {
                    lines.add("--");
                }
            }
            lines.close();
            return;
        }
        lines.add(std::string(state).append(" : ").append(state));
        for (const Row& row : region.rows) {
            if (row.from == state && isInternal(row)) {
                lines.add(std::string(state).append(" : ").append(reaction(row)));
            }
        }
    }

    const std::vector<DescribedMachine>& machines;
    Lines lines;
};

// Markdown.

std::string code(const std::string& text) {
    return text.empty() ? std::string() : std::string("`").append(text).append("`");
}

std::string tableRow(const Row& row) {
    std::string text("| ");
    text.append(code(row.from)).append(" | ");
    text.append(row.event.empty() ? "(completion)" : code(readable(row.event))).append(" | ");
    text.append(code(readable(row.guard))).append(" | ");
    text.append(code(row.action)).append(" | ");
    return text.append(isInternal(row) ? "(stays)" : code(row.to)).append(" |\n");
}

} // namespace

std::vector<std::string> machineRegions() {
    std::vector<std::string> names;
    for (const DescribedMachine& machine : describedMachines()) {
        for (const DescribedRegion& region : machine.regions) {
            names.push_back(region.name);
        }
    }
    return names;
}

std::string machineAsDot(std::string_view region) {
    const std::vector<DescribedMachine> machines = chosen(region);
    return machines.empty() ? std::string() : Dot(machines).draw();
}

std::string machineAsMermaid(std::string_view region) {
    const std::vector<DescribedMachine> machines = chosen(region);
    return machines.empty() ? std::string() : Mermaid(machines).draw();
}

std::string machineAsTable(std::string_view region) {
    std::string text;
    for (const DescribedMachine& machine : chosen(region)) {
        for (const DescribedRegion& part : machine.regions) {
            text.append(text.empty() ? "" : "\n").append("### ").append(machine.name);
            text.append(", region ").append(part.name).append("\n\n");
            text.append("Begins in ").append(code(part.table.initial)).append(".\n\n");
            text.append("| state | event | guard | actions | next state |\n|---|---|---|---|---|\n");
            for (const Row& row : part.table.rows) {
                text.append(tableRow(row));
            }
        }
    }
    return text;
}
