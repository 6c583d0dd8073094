#include "cli/ExitStatus.h"

namespace ombrel {

namespace {

ExitStatus getExitStatus(Family family) {
    switch (family) {
    case Family::Formatting:
        return ExitStatus::WouldChange;
    case Family::Syntax:
        return ExitStatus::Unparsable;
    case Family::Input:
        return ExitStatus::Refused;
    case Family::Usage:
        return ExitStatus::Usage;
    case Family::Safety:
        return ExitStatus::Unsafe;
    case Family::Writing:
        return ExitStatus::WriteFailed;
    case Family::Comments:
        break;
    }
    return ExitStatus::Done;
}

} // namespace

ExitStatus getExitStatus(const Problem& problem) {
    return problem.isError() ? getExitStatus(getInfo(problem.code).family) : ExitStatus::Done;
}

} // namespace ombrel
