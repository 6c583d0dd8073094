#pragma once

#include "support/GoldenFile.h"

#include <gtest/gtest.h>

// Every case of the golden files is a test of its own, named by its file and line.

/// What is under test makes of an input.
using GoldenProducer = std::u16string (*)(const std::u16string& input, const GoldenOptions& options);

/// The cases of a folder of tests/golden. With OMBREL_UPDATE_GOLDEN set, what the producer makes now becomes
/// what the files want.
std::vector<GoldenCase> loadGoldenCases(const char* folder, GoldenProducer produce);

/// "tests/golden/line/if.txt:12" is named "if_12".
std::string getGoldenName(const testing::TestParamInfo<GoldenCase>& info);

/// Compares a result with what the producer makes, under a trace with the place of the case.
void expectGolden(const GoldenCase& golden, const GoldenResult& wanted, GoldenProducer produce);

/// "file:line: sentence" of a case or of one of its results.
std::string getGoldenPlace(const GoldenCase& golden, std::size_t line);

void PrintTo(const GoldenCase& golden, std::ostream* stream);
