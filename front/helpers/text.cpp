#include "front/helpers/text.h"

#include "platform/log.h"

#include <boost/filesystem/operations.hpp>
#include <boost/regex.hpp>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <libintl.h>
#include <sstream>
#include <stdexcept>

namespace {

std::string ReplaceAll(const std::string& text, char what, const char* with) {
    std::string result;
    for (const char letter : text) {
        if (letter == what)
            result += with;
        else
            result += letter;
    }
    return result;
}

std::string ReadWhole(const std::string& path) {
    std::ifstream input;
    input.exceptions(std::ios::failbit | std::ios::badbit);
    input.open(path);
    std::ostringstream text;
    // Copying nothing sets failbit, so an empty file is no failure here.
    text << input.rdbuf();
    if (text.bad())
        throw std::runtime_error("failed to read the file");
    return text.str();
}

void ReplaceThroughTemporary(const std::string& path, const std::string& regexp,
                             const std::string& replacement) {
    const std::string text = ReadWhole(path);
    const std::string temporary = path + ".tmp";
    std::ofstream output;
    output.exceptions(std::ios::failbit | std::ios::badbit);
    output.open(temporary);
    // The file keeps its mode through the rename, so that a private one stays private.
    boost::filesystem::permissions(temporary, boost::filesystem::status(path).permissions());
    output << boost::regex_replace(text, boost::regex(regexp), replacement);
    output.close();
    boost::filesystem::rename(temporary, path);
}

} // namespace

std::string ShellQuote(const std::string& text) {
    return "'" + ReplaceAll(ReplaceAll(text, '\\', "\\\\"), '\'', "'\\''") + "'";
}

std::string ToUpper(std::string text) {
    for (char& letter : text) {
        if (letter >= 'a' && letter <= 'z')
            letter = static_cast<char>(letter - 'a' + 'A');
    }
    return text;
}

bool ParseLong(const char* text, long* out) {
    char* end = nullptr;
    errno = 0;
    *out = std::strtol(text, &end, 10);
    if (end == text || (*end != '\0' && *end != '\n'))
        return false;
    return !((*out == LONG_MIN || *out == LONG_MAX) && errno == ERANGE);
}

void ReplaceInFile(const std::string& path, const std::string& regexp, const std::string& replacement) {
    try {
        ReplaceThroughTemporary(path, regexp, replacement);
    } catch (const std::exception& failure) {
        boost::system::error_code ignored;
        boost::filesystem::remove(path + ".tmp", ignored);
        const std::string message = gettext("Failed to replace string in file ") + path +
                                    gettext(". Regexp: ") + regexp + gettext(". Replacement: ") +
                                    replacement + gettext(". Error: ") + failure.what();
        slput(kLogError, "<ReplaceInFile> %s", message.c_str());
        std::cerr << message << '\n';
    }
}
