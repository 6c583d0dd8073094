#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

/// Runs `work` on a text and adds the counters that our tables are made of:
///
/// - `chars/s`: 16-bit characters of the text in a second;
/// - `x_copy`: time of a run as a multiple of the time that copying the text takes;
/// - `growth`: time against the run of the same `family` on half the text, where that has just been measured;
/// - `bytes/char`: peak memory of one run, without the text itself, for each character.
void measure(benchmark::State& state, const std::string& family, const std::u16string& text,
             const std::function<void()>& work);
