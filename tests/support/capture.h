#pragma once

#include <functional>
#include <string>

// What a call writes to the terminal, its child processes included.
namespace support {

struct Output {
    std::string out; // standard output
    std::string err; // standard error
    bool operator==(const Output&) const = default;
};

// Shows both texts when an expectation fails.
void PrintTo(const Output& output, std::ostream* stream);

// Runs `call` with `input` as its standard input.
[[nodiscard]] Output Capture(const std::function<void()>& call, const std::string& input = "");

} // namespace support
