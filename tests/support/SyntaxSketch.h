#pragma once

#include <ca/Analyzer.h>

#include <string>

/// A syntax tree as `Kind(field field)`, a line each statement: names as themselves, lists in brackets, `-`
/// for what is absent. Texts have to be ASCII.
std::string sketchSyntax(const lf::astapi::ProgramFile<ca::astapi::CA>& root);
