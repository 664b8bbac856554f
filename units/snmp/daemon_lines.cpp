#include "units/snmp/daemon_lines.h"

#include "platform/messages.h"
#include "units/snmp/unit.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace snmp {
namespace {

bool RefuseFile(const char* path) {
    return Refuse("%s: failed to apply %s configuration: %s", path, kSnmpAgentUnit, std::strerror(errno));
}

std::FILE* OpenPrivate(const char* path) {
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return nullptr;
    std::FILE* stream = fchmod(descriptor, 0600) == 0 ? fdopen(descriptor, "w") : nullptr;
    if (stream == nullptr)
        close(descriptor);
    return stream;
}

bool IsControl(char letter) {
    return (letter >= 0 && letter < ' ' && letter != '\t') || letter == '\x7f';
}

bool HoldsAnyOf(std::string_view text, const char* letters) {
    return text.find_first_of(letters) != std::string_view::npos;
}

} // namespace

Stream OpenDaemonFile(const char* path, bool is_private) {
    Stream stream(is_private ? OpenPrivate(path) : std::fopen(path, "we"));
    if (stream == nullptr)
        (void)RefuseFile(path);
    return stream;
}

bool CloseDaemonFile(Stream stream, const char* path) {
    const bool written = std::ferror(stream.get()) == 0;
    return (std::fclose(stream.release()) == 0 && written) || RefuseFile(path);
}

bool Piece::IsFit() const {
    if (place_ == Place::kOwn)
        return true;
    if (std::any_of(text_.begin(), text_.end(), IsControl))
        return false;
    if (place_ == Place::kQuoted)
        return !HoldsAnyOf(text_, "\"\\");
    return place_ == Place::kRest ||
           (!HoldsAnyOf(text_, " \t\\") && !text_.starts_with('"') && !text_.starts_with('\''));
}

Piece Word(std::string value) {
    return {std::move(value), Piece::Place::kWord};
}

Piece Quoted(std::string value) {
    return {std::move(value), Piece::Place::kQuoted};
}

Piece RestOfLine(std::string value) {
    return {std::move(value), Piece::Place::kRest};
}

bool WriteLine(std::FILE* out, const std::string& subject, const std::vector<Piece>& pieces) {
    std::string line;
    bool fit = true;
    bool gap = false; // an empty word behind a blank
    for (const Piece& piece : pieces) {
        fit = fit && piece.IsFit() && !(gap && piece.text_.starts_with(' '));
        gap = piece.place_ == Piece::Place::kWord && piece.text_.empty() && line.ends_with(' ');
        line += piece.place_ == Piece::Place::kQuoted ? '"' + piece.text_ + '"' : piece.text_;
    }
    if (!fit)
        return Refuse("SNMP: %s: the \"%s\" line is left out: a value is empty or holds a character that "
                      "cannot stand there",
                      subject, pieces.front().text_.substr(0, line.find(' ')));
    std::fprintf(out, "%s\n", line.c_str()); // a failure is found at the file's end
    return true;
}

} // namespace snmp
