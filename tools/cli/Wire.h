#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ombrel {

/// Numbers and texts one after the other, for a process of the same program on the same machine.
class WireWriter {
public:
    void add(std::uint64_t number) { bytes.append(reinterpret_cast<const char*>(&number), sizeof(number)); }

    template <class Character>
    void add(std::basic_string_view<Character> text) {
        add(text.size());
        bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(Character));
    }

    std::string take() { return std::move(bytes); }

private:
    std::string bytes;
};

/// Reads what a WireWriter has written, in the same order. Throws std::runtime_error if there is less, which
/// means that the other process hasn't done its work.
class WireReader {
public:
    explicit WireReader(std::string_view bytes) : rest(bytes) {}

    std::uint64_t readNumber() {
        std::uint64_t number = 0;
        copy(&number, 1, sizeof(number));
        return number;
    }

    template <class Character = char>
    std::basic_string<Character> readText() {
        const std::uint64_t length = readNumber();
        if (length > rest.size()) {
            throw std::runtime_error("an answer is incomplete");
        }
        std::basic_string<Character> text(length, Character());
        copy(text.data(), length, sizeof(Character));
        return text;
    }

private:
    void copy(void* target, std::size_t count, std::size_t size) {
        if (count * size > rest.size()) {
            throw std::runtime_error("an answer is incomplete");
        }
        std::memcpy(target, rest.data(), count * size);
        rest.remove_prefix(count * size);
    }

    std::string_view rest;
};

} // namespace ombrel
