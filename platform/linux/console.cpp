#include "platform/console.h"

#include "text.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>
#include <utility>

namespace {

std::string error_prefix;

void PrintLine(std::FILE* stream, const std::string& prefix, const char* format, std::va_list arguments) {
    std::string text =
        prefix + linux_platform::Harmless(linux_platform::FormatText(format, arguments), "\n\t");
    if (text.empty() || text.back() != '\n')
        text += '\n';
    std::cout.flush();
    // Both streams may be one terminal or file, and standard output alone has a buffer.
    if (stream != stdout)
        std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace

void shell_print_error(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stderr, error_prefix, format, arguments);
    va_end(arguments);
}

void shell_print_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    // So that a person can tell it from a refusal.
    PrintLine(stderr, ::isatty(STDERR_FILENO) != 0 ? "warning: " : "", format, arguments);
    va_end(arguments);
}

void shell_print_info(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stdout, "", format, arguments);
    va_end(arguments);
}

void shell_prefix_errors(std::string prefix) {
    error_prefix = std::move(prefix);
}

namespace corvanshell {

std::string WrapStr(const std::string& text, std::size_t width) {
    std::string wrapped = text;
    std::size_t start = 0;                 // of the line
    std::size_t blank = std::string::npos; // the last one that the line may break at
    for (std::size_t i = 0; i < wrapped.size(); ++i) {
        if (wrapped[i] == '\n') {
            start = i + 1;
            blank = std::string::npos;
            continue;
        }
        if (wrapped[i] == ' ' && i > start)
            blank = i;
        if (i - start >= width && blank != std::string::npos) {
            wrapped[blank] = '\n';
            start = blank + 1;
            blank = std::string::npos;
        }
    }
    return wrapped;
}

} // namespace corvanshell
