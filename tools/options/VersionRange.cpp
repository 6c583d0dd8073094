// Every condition is an interval of versions, whatever its operator is: that leaves one comparison to make.
#include "options/VersionRange.h"

#include "text/Printable.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::size_t mostDigits = 9;

bool isDigit(char c) {
    return '0' <= c && c <= '9';
}

/// The numbers of a pattern up to its first x, at most three.
using Numbers = std::vector<std::uint32_t>;

/// The first version that the pattern means.
Version getFirst(const Numbers& numbers) {
    Version version{};
    std::copy(numbers.begin(), numbers.end(), version.begin());
    return version;
}

/// The first version after all that start with the first `count` numbers; none if that are all there are.
std::optional<Version> getNext(const Numbers& numbers, std::size_t count) {
    if (count == 0) {
        return std::nullopt;
    }
    Version version{};
    std::copy_n(numbers.begin(), count, version.begin());
    ++version[count - 1];
    return version;
}

/// How many numbers have to stay what they are after a ^.
std::size_t countFixed(const Numbers& numbers) {
    const auto notZero = std::find_if(numbers.begin(), numbers.end(), [](std::uint32_t n) { return n != 0; });
    return std::min(static_cast<std::size_t>(notZero - numbers.begin()) + 1, numbers.size());
}

} // namespace

class VersionRange::Parser {
public:
    explicit Parser(std::string_view text) : text(text) {}

    Result<VersionRange> parse() {
        VersionRange range;
        do {
            auto set = parseSet();
            if (!set) {
                return fail(set.error());
            }
            range.sets.push_back(*std::move(set));
        } while (take("||"));
        return range;
    }

private:
    Result<Set> parseSet() {
        Set set;
        isApart = true;
        skipSpaces();
        do {
            const auto interval = parseCondition();
            if (!interval) {
                return fail(interval.error());
            }
            set.push_back(*interval);
            isApart = skipSpaces();
        } while (!text.empty() && !text.starts_with("||"));
        return set;
    }

    Result<Interval> parseCondition() {
        const std::string_view sign = takeOperator();
        if (sign.empty() && !isApart) {
            return refuse();
        }
        skipSpaces();
        const auto numbers = parsePattern();
        return numbers ? Result<Interval>(makeInterval(sign, *numbers)) : refuse();
    }

    static Interval makeInterval(std::string_view sign, const Numbers& numbers) {
        const Version first = getFirst(numbers);
        const auto next = getNext(numbers, numbers.size());
        if (sign == "<") {
            return {{}, first};
        }
        if (sign == "<=") {
            return {{}, next};
        }
        if (sign == ">") { // nothing is later than all versions
            return next ? Interval{*next, std::nullopt} : Interval{{}, Version{}};
        }
        if (sign == ">=") {
            return {first, std::nullopt};
        }
        if (sign == "^") {
            return {first, getNext(numbers, countFixed(numbers))};
        }
        return {first, sign == "~" ? getNext(numbers, std::min<std::size_t>(numbers.size(), 2)) : next};
    }

    std::string_view takeOperator() {
        for (const std::string_view sign : {"<=", ">=", "<", ">", "=", "^", "~"}) {
            if (take(sign)) {
                return sign;
            }
        }
        return {};
    }

    /// Nothing if there is none.
    std::optional<Numbers> parsePattern() {
        Numbers numbers;
        do {
            if (takeAny()) {
                return numbers;
            }
            const auto number = takeNumber();
            if (!number) {
                return std::nullopt;
            }
            numbers.push_back(*number);
        } while (numbers.size() < 3 && take("."));
        return numbers;
    }

    bool takeAny() { return take("x") || take("X") || take("*"); }

    std::optional<std::uint32_t> takeNumber() {
        const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
        const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
        if (digits.empty() || digits.size() > mostDigits) {
            return std::nullopt;
        }
        std::uint32_t number = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
        text.remove_prefix(digits.size());
        return number;
    }

    bool take(std::string_view word) {
        const bool isThere = text.starts_with(word);
        text.remove_prefix(isThere ? word.size() : 0);
        return isThere;
    }

    /// Whether there were any.
    bool skipSpaces() {
        const std::size_t count = std::min(text.find_first_not_of(' '), text.size());
        text.remove_prefix(count);
        return count > 0;
    }

    Failure refuse() const {
        return fail(Code::InvalidValue,
                    fmt::format("expected a range of versions, such as \">=1.2 <2\" or \"^1.2.0\"; {}",
                                text.empty() ? "it ends too early"
                                             : fmt::format("can't read \"{}\"", getPrintableName(text))));
    }

    std::string_view text; ///< what is left of it
    bool isApart = true;   ///< a condition may begin without an operator here
};

Result<VersionRange> VersionRange::parse(std::string_view text) {
    return Parser(text).parse();
}

bool VersionRange::contains(const Version& version) const {
    return std::any_of(sets.begin(), sets.end(), [&](const Set& set) {
        return std::all_of(set.begin(), set.end(), [&](const Interval& interval) {
            return interval.first <= version && (!interval.last || version < *interval.last);
        });
    });
}

Version getProgramVersion() {
    return {OMBREL_VERSION_NUMBERS};
}

std::string describe(const Version& version) {
    return fmt::format("{}", fmt::join(version, "."));
}

std::string getVersionRangePattern() {
    const std::string pattern = "(?:[0-9]{1,9}\\.){0,2}(?:[0-9]{1,9}|[xX*])";
    const std::string sign = "(?:[<>]=?|[=^~]) *";
    return fmt::format(R"(^ *(?:{0})?{1}(?: *(?:{0}|\|\| *(?:{0})?| ){1})* *$)", sign, pattern);
}

} // namespace ombrel
