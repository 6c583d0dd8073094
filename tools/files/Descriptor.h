#pragma once

#include <utility>

#include <unistd.h>

namespace ombrel {

/// Owns a file descriptor of the system; a negative one is closed.
class Descriptor {
public:
    explicit Descriptor(int number) : number(number) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { close(); }

    int get() const { return number; }

    void close() {
        if (number >= 0) {
            ::close(std::exchange(number, -1));
        }
    }

private:
    int number;
};

} // namespace ombrel
