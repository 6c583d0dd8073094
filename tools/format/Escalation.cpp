#include "format/Escalation.h"

#include "format/GapText.h"
#include "text/LineSplitter.h"
#include "text/Whitespace.h"

#include <algorithm>
#include <string_view>

namespace ombrel {

namespace {

constexpr int keepingStep = 2;
constexpr int lastStep = 4;

} // namespace

bool Escalation::raise(const std::vector<std::size_t>& places) {
    std::vector<std::size_t> units;
    for (const std::size_t place : places) {
        const std::size_t token = std::min(input.gaps.find(place), input.gaps.getCount() - 1);
        const std::size_t unit = input.syntax.getUnit(token);
        if (units.empty() || units.back() != unit) {
            units.push_back(unit);
        }
    }
    bool isRaised = false;
    for (const std::size_t unit : units) {
        isRaised = raiseUnit(unit) || isRaised;
    }
    return isRaised;
}

bool Escalation::raiseUnit(std::size_t unit) {
    int& step = steps[unit];
    if (step == lastStep) {
        return false;
    }
    const std::size_t end = input.syntax.getUnitEnd(unit);
    switch (++step) {
    case 1:
        for (std::size_t gap = unit; gap <= end && gap < choices.getCount(); ++gap) {
            simplify(gap);
        }
        break;
    case keepingStep:
        keepInside(unit);
        kept.insert(unit);
        break;
    case lastStep:
        if (unit > 0) {
            keepInside(input.syntax.getUnit(unit - 1));
            keepEdges(input.syntax.getUnit(unit - 1));
        }
        if (end < choices.getCount()) {
            keepInside(end);
            keepEdges(end);
        }
        break;
    default:
        keepEdges(unit);
        break;
    }
    return true;
}

void Escalation::simplify(std::size_t gap) {
    if (choices.isChanged(gap)) {
        choices.choose(gap, getConservativeText(input, gap));
    }
}

void Escalation::keepInside(std::size_t unit) {
    const std::size_t end = input.syntax.getUnitEnd(unit);
    for (std::size_t gap = unit + 1; gap < end; ++gap) {
        if (choices.isChanged(gap)) {
            choices.chooseSource(gap);
            kept.insert(unit);
        }
    }
}

void Escalation::keepEdges(std::size_t unit) {
    choices.chooseSource(unit);
    const std::size_t end = input.syntax.getUnitEnd(unit);
    if (end < choices.getCount()) {
        choices.chooseSource(end);
    }
}

std::vector<LineRange> Escalation::getKeptLines() const {
    std::vector<LineRange> lines;
    LineCounter counter(input.gaps.getSource());
    for (const std::size_t unit : kept) {
        const std::uint32_t first = counter.getLine(input.gaps.getEnd(unit));
        lines.push_back({first, counter.getLine(input.gaps.getEnd(input.syntax.getUnitEnd(unit) - 1))});
    }
    return lines;
}

} // namespace ombrel
