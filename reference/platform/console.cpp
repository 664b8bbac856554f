#include "platform/console.h"

#include "text.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <strings.h>

namespace {

void PrintLine(std::FILE* stream, const char* format, std::va_list arguments) {
    std::string text = reference::FormatText(format, arguments);
    if (text.empty() || text.back() != '\n')
        text += '\n';
    std::cout.flush();
    // Both streams may be one terminal or file, and standard output alone has a buffer.
    if (stream != stdout)
        std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stream);
}

std::string ReadAnswer() {
    char* line = nullptr;
    std::size_t size = 0;
    const auto length = ::getline(&line, &size, stdin);
    const std::unique_ptr<char, void (*)(void*)> owner(line, std::free);
    return length > 0 ? std::string(reference::Trim({line, static_cast<std::size_t>(length)}))
                      : std::string();
}

} // namespace

void shell_print_error(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stderr, format, arguments);
    va_end(arguments);
}

void shell_print_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stderr, format, arguments);
    va_end(arguments);
}

void shell_print_info(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stdout, format, arguments);
    va_end(arguments);
}

int shell_get_user_confirmation(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string question = reference::FormatText(format, arguments) + " [y/N] ";
    va_end(arguments);
    std::cout.flush();
    std::fwrite(question.data(), 1, question.size(), stdout);
    std::fflush(stdout);
    const std::string answer = ReadAnswer();
    return ::strcasecmp(answer.c_str(), "y") == 0 || ::strcasecmp(answer.c_str(), "yes") == 0;
}

namespace corvanshell {

std::string WrapStr(const std::string& text, std::size_t width) {
    std::string wrapped = text;
    std::size_t start = 0;                // of the line
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
