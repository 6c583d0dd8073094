#pragma once

#include "diagnostics/Result.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// Major, minor, patch.
using Version = std::array<std::uint32_t, 3>;

/// A set of versions, such as ">=1.2 <2 || ^3.1.4":
///
///     range     = set { "||" set }          a version in one of the sets
///     set       = condition { condition }   one that meets all conditions
///     condition = [ "=" | "<" | "<=" | ">" | ">=" | "^" | "~" ] pattern
///     pattern   = [ number "." [ number "." ] ] ( number | "x" | "X" | "*" )
///     number    = digits, at most nine
///
/// There may be spaces before and after conditions and after operators, and there has to be one before a
/// condition without an operator that follows another one. A pattern means every version that starts with its
/// numbers: 1.2, 1.2.x and =1.2 are >=1.2.0 <1.3.0. So >1.2 is >=1.3.0, <=1.2 is <1.3.0, and <1.2 is <1.2.0.
/// ~ allows the last number to grow that a minor version has: ~1.2.3 is >=1.2.3 <1.3.0, ~1 is 1.x. ^ allows
/// everything after the first number that isn't 0 to grow: ^1.2.3 is >=1.2.3 <2.0.0, ^0.2.3 is >=0.2.3
/// <0.3.0, ^0.0.3 is 0.0.3.
class VersionRange {
public:
    /// Fails with one InvalidValue, without a place, that says what isn't understood.
    static Result<VersionRange> parse(std::string_view text);

    bool contains(const Version& version) const;

private:
    class Parser;

    /// From the first version, included, to the last, excluded; no last one: all later versions.
    struct Interval {
        Version first;
        std::optional<Version> last;
    };
    using Set = std::vector<Interval>; ///< a version has to be in all of them

    std::vector<Set> sets;
};

/// The version of this program.
Version getProgramVersion();

/// "1.2.0".
std::string describe(const Version& version);

/// What a text that VersionRange::parse() accepts looks like, as a regular expression of ECMAScript.
std::string getVersionRangePattern();

} // namespace ombrel
