#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace linux_platform {

// Owns an open descriptor.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    int get() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    void reset();
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

// Opens a regular file for reading; never waits, whatever stands at the path. When it can't be opened,
// errno tells why (EINVAL: no regular file).
Descriptor OpenRegular(const std::string& path);

// read(2) until a signal does not come between. The number of bytes, 0 at the end, -1 with errno.
long ReadSome(int descriptor, char* buffer, std::size_t size);

// Writes all of the text. False with errno.
[[nodiscard]] bool WriteAll(int descriptor, std::string_view text);

// Reads a whole regular file of at most `limit` bytes. 0, or the error's number (EFBIG: it is longer).
[[nodiscard]] int ReadText(const std::string& path, std::size_t limit, std::string& text);

} // namespace linux_platform
