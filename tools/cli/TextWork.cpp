// The process gets a job and answers with edits and notes, or with problems. It sets its own alarm before it
// reads the job, so that the time that it takes to start doesn't count, and that it ends in any case.
#include "cli/TextWork.h"

#include "cli/ExitStatus.h"
#include "cli/Wire.h"
#include "format/EditAdoption.h"
#include "format/Formatter.h"
#include "format/SuppressionUse.h"
#include "format/SyntaxCheck.h"
#include "process/Process.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <iterator>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/time.h>

namespace ombrel {

namespace {

/// For a process to start and to end, which the limit isn't about.
constexpr std::chrono::seconds grace{10};

Result<TreeResult> checkSyntax(const TextJob& job) {
    Problems errors = findSyntaxErrors(job.text);
    return errors.empty() ? Result<TreeResult>() : fail(std::move(errors));
}

Result<TreeResult> format(const TextJob& job) {
    auto result = formatText(job.text, job.options, job.lines, *job.suppression, job.record);
    if (result && job.lines.empty()) { // else most of the text isn't meant to be formatted
        const Problems warnings = findUnneededSuppression(job.text, job.options, *job.suppression);
        result->notes.insert(result->notes.begin(), warnings.begin(), warnings.end());
    }
    return result;
}

Result<TreeResult> work(const TextJob& job) {
    return job.checksSyntax ? checkSyntax(job) : format(job);
}

std::string writeJob(const TextJob& job) {
    WireWriter writer;
    writer.add(std::u16string_view(job.text));
    writer.add(job.checksSyntax);
    writer.add(static_cast<std::uint64_t>(job.options.engine));
    writer.add(job.options.line.indentSize);
    writer.add(job.options.line.tabSize);
    writer.add(job.options.line.useTabs);
    writer.add(static_cast<std::uint64_t>(job.options.line.functionStyle));
    writer.add(static_cast<std::uint64_t>(job.options.line.blankLines));
    writer.add(std::u16string_view(job.options.formattingJson));
    writer.add(job.lines.size());
    for (const LineRange& range : job.lines) {
        writer.add(range.first);
        writer.add(range.last);
    }
    return writer.take();
}

/// The job in `bytes`, done.
Result<TreeResult> workOn(std::string_view bytes, FormatRecord& record) {
    using namespace ca::formatting::legacy;
    WireReader reader(bytes);
    const std::u16string text = reader.readText<char16_t>();
    const Suppression suppression = findSuppression(text);
    TextJob job{text, {}, {}, reader.readNumber() != 0, &suppression, &record};
    job.options.engine = static_cast<Engine>(reader.readNumber());
    job.options.line.indentSize = static_cast<std::uint32_t>(reader.readNumber());
    job.options.line.tabSize = static_cast<std::uint32_t>(reader.readNumber());
    job.options.line.useTabs = reader.readNumber() != 0;
    job.options.line.functionStyle = static_cast<FunctionStyle>(reader.readNumber());
    job.options.line.blankLines = static_cast<BlankLineStyle>(reader.readNumber());
    job.options.formattingJson = reader.readText<char16_t>();
    for (std::uint64_t count = reader.readNumber(); count > 0; --count) {
        const auto first = static_cast<std::uint32_t>(reader.readNumber());
        job.lines.push_back({first, static_cast<std::uint32_t>(reader.readNumber())});
    }
    return work(job);
}

void write(const Problems& problems, WireWriter& writer) {
    writer.add(problems.size());
    for (const Problem& problem : problems) {
        writer.add(static_cast<std::uint64_t>(problem.code));
        writer.add(static_cast<std::uint64_t>(problem.severity));
        writer.add(std::string_view(problem.text));
        writer.add(problem.line);
        writer.add(problem.column);
        writer.add(problem.lastLine);
    }
}

Problems readProblems(WireReader& reader) {
    Problems problems;
    for (std::uint64_t count = reader.readNumber(); count > 0; --count) {
        const auto code = static_cast<Code>(reader.readNumber());
        const auto severity = static_cast<Severity>(reader.readNumber());
        Problem& problem = problems.emplace_back(code, reader.readText());
        problem.severity = severity;
        problem.line = static_cast<std::uint32_t>(reader.readNumber());
        problem.column = static_cast<std::uint32_t>(reader.readNumber());
        problem.lastLine = static_cast<std::uint32_t>(reader.readNumber());
    }
    return problems;
}

void write(const Edits& edits, WireWriter& writer) {
    writer.add(edits.size());
    for (const EditView edit : edits) {
        writer.add(edit.offset);
        writer.add(edit.length);
        writer.add(std::u16string_view(edit.text));
    }
}

std::vector<Edit> readEdits(WireReader& reader) {
    std::vector<Edit> edits;
    for (std::uint64_t count = reader.readNumber(); count > 0; --count) {
        const std::size_t offset = reader.readNumber();
        const std::size_t length = reader.readNumber();
        edits.push_back({offset, length, reader.readText<char16_t>()});
    }
    return edits;
}

std::string writeAnswer(const Result<TreeResult>& result, const FormatRecord& record) {
    WireWriter writer;
    writer.add(result.has_value());
    write(result ? result->notes : result.error(), writer);
    writer.add(std::u16string_view(record.rejected));
    if (result) {
        write(result->edits, writer);
    }
    return writer.take();
}

/// Edits count only if they keep the text's program, as if another version of it had been formatted.
Result<TreeResult> readAnswer(std::string_view bytes, const TextJob& job) {
    WireReader reader(bytes);
    const bool isDone = reader.readNumber() != 0;
    Problems problems = readProblems(reader);
    std::u16string rejected = reader.readText<char16_t>();
    if (job.record != nullptr) {
        job.record->rejected = std::move(rejected);
    }
    if (!isDone) {
        return fail(std::move(problems));
    }
    auto edits = adoptEdits(job.text, readEdits(reader));
    if (!edits) {
        return fail(std::move(edits.error()));
    }
    return TreeResult{*std::move(edits), std::move(problems)};
}

Failure failInTime(std::chrono::milliseconds timeLimit) {
    return fail(Code::TimeLimit, fmt::format("this takes longer than the time limit, {} seconds",
                                             std::chrono::duration<double>(timeLimit).count()));
}

Failure failWithStatus(int status) {
    if (status == static_cast<int>(ExitStatus::Refused)) { // it couldn't even report that
        return fail(Code::OutOfMemory, "not enough memory for this text");
    }
    return fail(Code::InternalError, fmt::format("the process that formats it ended with status {}", status));
}

Result<TreeResult> workElsewhere(const TextJob& job, std::chrono::milliseconds timeLimit) {
    const std::vector<std::string> words = {"/proc/self/exe", workerFlag, std::to_string(timeLimit.count())};
    try {
        const ProcessResult done = runProcess(words, getEnvironment(), writeJob(job), {timeLimit + grace});
        if (done.status == EXIT_SUCCESS) {
            return readAnswer(done.out, job);
        }
        return done.status == 128 + SIGALRM ? failInTime(timeLimit) : failWithStatus(done.status);
    } catch (const std::system_error& error) {
        return error.code() == std::errc::timed_out
                   ? failInTime(timeLimit)
                   : fail(Code::TimeLimit,
                          fmt::format("no process can be started, which --time-limit needs: {}",
                                      error.what()));
    }
}

/// From now on the process ends after this time, whatever it does.
void setAlarm(long milliseconds) {
    std::signal(SIGALRM, SIG_DFL); // whoever started the program may have ignored or blocked it
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    ::sigprocmask(SIG_UNBLOCK, &alarm, nullptr);
    const itimerval timer{{0, 0}, {milliseconds / 1000, milliseconds % 1000 * 1000}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

Result<TreeResult> workSafely(std::string_view bytes, FormatRecord& record) {
    try {
        return workOn(bytes, record);
    } catch (const std::bad_alloc&) {
        return fail(Code::OutOfMemory, "not enough memory for this text");
    } catch (const std::exception& error) {
        return fail(Code::InternalError, fmt::format("formatting failed: {}", error.what()));
    }
}

} // namespace

Result<TreeResult> workOnText(const TextJob& job, std::chrono::milliseconds timeLimit) {
    return timeLimit.count() == 0 ? work(job) : workElsewhere(job, timeLimit);
}

int serveTextWork(const char* milliseconds) {
    setAlarm(std::strtol(milliseconds, nullptr, 10));
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would read the answer
    const std::string job{std::istreambuf_iterator<char>(std::cin), {}};
    FormatRecord record;
    const auto result = workSafely(job, record);
    std::cout << writeAnswer(result, record) << std::flush;
    return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace ombrel
