#pragma once

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <vector>

// Options files for the drivers, made from the program's table of options. A parameter is an option, or one
// construct of an option that can be given for constructs one by one.

/// The number of a value for each parameter.
using OptionRow = std::vector<std::size_t>;

/// Rows in which each value of a parameter meets each value of every other one. The same each time.
const std::vector<OptionRow>& getPairwiseRows();

/// A row for each value of each parameter, with the defaults of all others.
const std::vector<OptionRow>& getSingleRows();

/// The text of an options file.
std::string writeOptions(const OptionRow& row);

/// The same options with fields in another order, other whitespace, comments and escapes. `loss` leaves out
/// one parameter: a planted fault.
std::string respellOptions(const OptionRow& row, std::minstd_rand& random, bool loss);

struct HostileOptions {
    std::string text;
    std::optional<bool> isWrong; ///< none if this isn't known
};

/// An options file with a value that its option can't have, or with damage anywhere, or a good one.
HostileOptions makeHostileOptions(std::minstd_rand& random);
