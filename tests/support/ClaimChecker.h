#pragma once

#include <ca/astapi/CA.h>
#include <ca/lexer/Token.h>
#include <lf/astapi/Nodes.h>

#include <string>
#include <vector>

/// Walks a tree and the tokens of its text side by side, as the tree formatter does, and looks at what the
/// formatter trusts: each token of a node is of a type that belongs there, nothing but whitespace,
/// comments and free separators is between them, parents are set, positions and places are the tokens', and
/// the walk ends at `EndOfInput`.
///
/// The first fault with its line and column; empty if there is none.
std::string checkClaims(const lf::astapi::ProgramFile<ca::astapi::CA>& root,
                        const std::vector<ca::lexer::Token>& tokens);

/// How many leaves the walk has: one for each token of code, and one for each place where the grammar allows
/// whitespace. Throws std::runtime_error with the fault if there is one.
std::size_t countClaims(const lf::astapi::ProgramFile<ca::astapi::CA>& root,
                        const std::vector<ca::lexer::Token>& tokens);
