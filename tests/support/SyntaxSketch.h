#pragma once

#include <ca/Analyzer.h>

#include <map>
#include <string>

/// A syntax tree as `Kind(field field)`, a line each statement: names as themselves, lists in brackets, `-`
/// for what is absent. Texts have to be ASCII.
std::string sketchSyntax(const lf::astapi::ProgramFile<ca::astapi::CA>& root);

/// Adds the nodes of a tree to the counts of their kinds.
void countKinds(const lf::astapi::Node<ca::astapi::CA>& root,
                std::map<lf::astapi::NodeKind, std::size_t>& counts);
