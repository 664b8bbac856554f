#pragma once

#include "front/helpers/stream.h"

#include <cstdio>
#include <string>
#include <vector>

// The daemon's files, and the one way in which a settings value gets into them.

namespace snmp {

// Opens the file anew. A private one is readable by its owner alone before anything is written. Null, and
// reported, when it can't be opened.
[[nodiscard]] Stream OpenDaemonFile(const char* path, bool is_private);
// False, and reported, unless all that was written is on disk.
[[nodiscard]] bool CloseDaemonFile(Stream stream, const char* path);

// A piece of a line: our own words, or a value from the settings with its place in the line.
class Piece {
public:
    Piece(const char* words) : text_(words), place_(Place::kOwn) {} // not explicit: lines are lists of both

private:
    enum class Place { kOwn, kWord, kQuoted, kRest };

    Piece(std::string text, Place place) : text_(std::move(text)), place_(place) {}
    bool IsFit() const;

    friend Piece Word(std::string value);
    friend Piece Quoted(std::string value);
    friend Piece RestOfLine(std::string value);
    friend bool WriteLine(std::FILE* out, const std::string& subject, const std::vector<Piece>& pieces);

    std::string text_;
    Place place_;
};

// A value that stands between blanks, one that is written in double quotes, and one that ends the line.
Piece Word(std::string value);
Piece Quoted(std::string value);
Piece RestOfLine(std::string value);

// Writes the pieces and a newline. The settings file may have been edited by hand, and its values must not
// become lines or arguments of their own: a value that holds a control character, in quotes a quote or a
// backslash, or as a word a blank, a backslash or a quote at its start, is not quoted differently, which
// would make another password of it, but refused. So is an empty word between blanks, whose place the next
// word would take. Then the line is left out, the error names the subject ("user bob") and never the value,
// and the result is false; the caller goes on with its other lines.
[[nodiscard]] bool WriteLine(std::FILE* out, const std::string& subject, const std::vector<Piece>& pieces);

} // namespace snmp
