#pragma once

#include <unistd.h>
#include <utility>

// A file descriptor that is closed with its owner; a negative number stands for none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { Reset(); }
    Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    int Get() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    void Reset() {
        if (number_ >= 0)
            ::close(Release());
    }
    // The number, which is the caller's from here on.
    int Release() { return std::exchange(number_, -1); }

private:
    int number_;
};
