#include "guard_file.h"

#include "files.h"
#include "text.h"

#include "platform/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace linux_platform {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t guard_size_limit = 262144;
constexpr std::size_t digest_length = 64;
constexpr int link_limit = 40; // the kernel's own

// A path that holds a newline or a backslash stands escaped, and a backslash before the digest says so.
constexpr struct {
    char plain;
    char escaped;
} escapes[] = {{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}};

std::optional<std::string> Unescape(std::string_view text) {
    std::string path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            path += text[i];
            continue;
        }
        if (++i == text.size())
            return std::nullopt;
        const auto* row = std::find_if(std::begin(escapes), std::end(escapes),
                                       [&](const auto& entry) { return entry.escaped == text[i]; });
        if (row == std::end(escapes))
            return std::nullopt;
        path += row->plain;
    }
    return path;
}

std::string LineText(const GuardLine& line) {
    const bool escaped = line.path.find_first_of("\\\n") != std::string::npos;
    std::string text = (escaped ? "\\" : "") + line.digest + "  ";
    for (const char character : line.path) {
        const auto* row = std::find_if(std::begin(escapes), std::end(escapes),
                                       [&](const auto& entry) { return entry.plain == character; });
        if (escaped && row != std::end(escapes))
            text.append({'\\', row->escaped});
        else
            text += character;
    }
    return text + '\n';
}

std::optional<GuardLine> ParseLine(std::string_view text) {
    const bool escaped = text.starts_with('\\');
    text.remove_prefix(escaped ? 1 : 0);
    const std::string_view digits = text.substr(0, digest_length);
    if (digits.size() != digest_length ||
        digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(digest_length);
    if (!text.starts_with("  /") || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(2);
    auto path = escaped ? Unescape(text) : std::optional<std::string>(text);
    if (!path)
        return std::nullopt;
    GuardLine line{std::string(digits), *std::move(path)};
    for (char& digit : line.digest)
        digit = static_cast<char>(digit >= 'A' && digit <= 'F' ? digit - 'A' + 'a' : digit);
    return line;
}

// The place behind a chain of links, the last of which may lead to nothing yet.
std::string ResolveLink(const std::string& path) {
    fs::path place(path);
    for (int i = 0; fs::is_symlink(fs::symlink_status(place)); ++i) {
        if (i == link_limit)
            throw std::system_error(ELOOP, std::generic_category());
        place = place.parent_path() / fs::read_symlink(place);
    }
    return place.string();
}

// Removes the file unless it has got its final name.
struct TemporaryFile {
    std::string name;
    bool renamed = false;

    ~TemporaryFile() {
        if (!renamed)
            ::unlink(name.c_str());
    }
};

[[noreturn]] void ThrowError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// In one step: a new file takes the old one's name.
void WriteBeside(const std::string& place, const std::string& text) {
    TemporaryFile temporary{place + ".XXXXXX"};
    const Descriptor file(::mkostemp(temporary.name.data(), O_CLOEXEC));
    if (!file.IsOpen()) {
        temporary.renamed = true;
        ThrowError("failed to create temporary file");
    }
    if (!WriteAll(file.Get(), text) || ::fchmod(file.Get(), 0644) != 0 || ::fsync(file.Get()) != 0)
        ThrowError("failed to write temporary file");
    temporary.renamed = std::rename(temporary.name.c_str(), place.c_str()) == 0;
    if (!temporary.renamed)
        ThrowError("failed to rename temporary file");
}

} // namespace

const GuardLine* Guard::find(std::string_view path) const {
    const auto line =
        std::find_if(lines.begin(), lines.end(), [&](const auto& entry) { return entry.path == path; });
    return line == lines.end() ? nullptr : &*line;
}

void Guard::set(std::string_view path, std::string digest) {
    const auto line =
        std::find_if(lines.begin(), lines.end(), [&](const auto& entry) { return entry.path == path; });
    if (line == lines.end())
        lines.push_back({std::move(digest), std::string(path)});
    else
        line->digest = std::move(digest);
}

void Guard::erase(std::string_view path) {
    std::erase_if(lines, [&](const auto& entry) { return entry.path == path; });
}

Guard ReadGuard(const std::string& path) {
    Guard guard;
    std::string text;
    if (const int error = ReadText(path, guard_size_limit, text)) {
        guard.damaged = error != ENOENT && error != ENOTDIR;
        // What stands in the guard's place and is none does not come from the system.
        guard.error = guard.damaged && error != EINVAL && error != EFBIG && error != ELOOP ? error : 0;
        return guard;
    }
    // A last line without its newline may have lost a part of its path.
    guard.damaged = !text.empty() && text.back() != '\n';
    text.erase(text.rfind('\n') + 1);
    for (const std::string& line : SplitLines(text)) {
        auto parsed = ParseLine(line);
        if (parsed && !guard.find(parsed->path))
            guard.lines.push_back(*std::move(parsed));
        else
            guard.damaged = true;
    }
    return guard;
}

void WriteGuard(const std::string& path, const std::vector<GuardLine>& lines) {
    std::string text;
    for (const GuardLine& line : lines)
        text += LineText(line);
    const std::string place = ResolveLink(path);
    try {
        WriteBeside(place, text);
    } catch (const std::system_error& error) {
        // A guard is as long as it was when it knows the same files.
        const bool is_full = error.code().value() == ENOSPC || error.code().value() == EDQUOT;
        if (!is_full || !WriteSettingsFile(place, text, false))
            throw;
    }
}

} // namespace linux_platform
