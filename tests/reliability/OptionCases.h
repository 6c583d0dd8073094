#pragma once

#include <cstddef>
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

/// Cuts, doubles or inserts a piece somewhere in a text that isn't empty.
void damageOptions(std::string& text, std::minstd_rand& random);

/// Whether an independent reader finds no JSON in it. Lets pass what has commas after last elements, which
/// options files may have and JSON hasn't.
bool isSurelyWrong(const std::string& text);
