#include "platform/log.h"

#include "text.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <syslog.h>
#include <utility>

namespace {

using Text = std::string_view;

// A longer line is written in pieces, which the log daemon takes whole.
constexpr std::size_t line_limit = 8000;
constexpr std::size_t longest_character = 4; // in UTF-8
constexpr int default_log_level = LOG_INFO;

struct Name {
    Text name;
    int value;
};

constexpr Name facilities[] = {
    {"auth", LOG_AUTH},     {"authpriv", LOG_AUTHPRIV}, {"cron", LOG_CRON},     {"daemon", LOG_DAEMON},
    {"ftp", LOG_FTP},       {"kern", LOG_KERN},         {"lpr", LOG_LPR},       {"mail", LOG_MAIL},
    {"news", LOG_NEWS},     {"security", LOG_AUTH},     {"syslog", LOG_SYSLOG}, {"user", LOG_USER},
    {"uucp", LOG_UUCP},     {"local0", LOG_LOCAL0},     {"local1", LOG_LOCAL1}, {"local2", LOG_LOCAL2},
    {"local3", LOG_LOCAL3}, {"local4", LOG_LOCAL4},     {"local5", LOG_LOCAL5}, {"local6", LOG_LOCAL6},
    {"local7", LOG_LOCAL7},
};

constexpr Name priorities[] = {
    {"*", LOG_DEBUG},       {"alert", LOG_ALERT}, {"crit", LOG_CRIT},    {"debug", LOG_DEBUG},
    {"emerg", LOG_EMERG},   {"err", LOG_ERR},     {"error", LOG_ERR},    {"info", LOG_INFO},
    {"notice", LOG_NOTICE}, {"panic", LOG_EMERG}, {"warn", LOG_WARNING}, {"warning", LOG_WARNING},
};

struct State {
    std::string tag; // openlog(3) keeps a pointer to it
    int options = LOG_PID | LOG_NDELAY;
    int facility = LOG_USER;
    std::string prefix;
    int keeper_level = LOG_DEBUG;
    std::string pending; // the unfinished line of shell_log_event
    int pending_level = LOG_ERR;
};

State& state() {
    static State log;
    return log;
}

std::optional<int> FindValue(const Name* first, const Name* last, Text name) {
    const Name* row = std::find_if(first, last, [name](const Name& entry) { return entry.name == name; });
    return row == last ? std::nullopt : std::optional<int>(row->value);
}

// The part of the text that a line takes: no character is cut.
Text TakePiece(Text text) {
    if (text.size() <= line_limit)
        return text;
    std::size_t end = line_limit;
    while (end > line_limit - longest_character && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
        --end;
    return text.substr(0, end);
}

void PutLine(int level, Text line) {
    const std::string text = linux_platform::Harmless(line, "\t");
    for (Text rest = text; !rest.empty();) {
        const Text piece = TakePiece(rest);
        ::syslog(LOG_PRI(level), "%s%.*s", state().prefix.c_str(), static_cast<int>(piece.size()),
                 piece.data());
        rest.remove_prefix(piece.size());
    }
}

void PutText(int level, const char* format, std::va_list arguments) {
    const int error = errno;
    for (const std::string& line : linux_platform::SplitLines(linux_platform::FormatText(format, arguments)))
        PutLine(level, line);
    errno = error;
}

void PutPending() {
    PutLine(state().pending_level, std::exchange(state().pending, {}));
}

void KeepLevels(int level) {
    ::setlogmask(LOG_UPTO(std::clamp(level, LOG_EMERG, LOG_DEBUG)));
}

} // namespace

void slopen(const char* tag, int options, int facility) {
    ::closelog(); // it points into the old tag
    state().tag = tag;
    state().options = options;
    state().facility = facility;
    ::openlog(state().tag.c_str(), options, facility);
}

void slput(int level, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PutText(level, format, arguments);
    va_end(arguments);
}

void slclose() {
    PutPending();
    ::closelog();
}

void shell_log_error(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PutText(LOG_ERR, format, arguments);
    va_end(arguments);
}

void shell_log_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PutText(LOG_WARNING, format, arguments);
    va_end(arguments);
}

void shell_log_info(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PutText(LOG_INFO, format, arguments);
    va_end(arguments);
}

void shell_log_event(int level, int, const char* format, std::va_list arguments) {
    State& log = state();
    if (level != log.pending_level)
        PutPending();
    log.pending_level = level;
    log.pending += linux_platform::FormatText(format, arguments);
    for (std::size_t end = 0; (end = log.pending.find('\n')) != std::string::npos;) {
        PutLine(level, Text(log.pending).substr(0, end));
        log.pending.erase(0, end + 1);
    }
    if (log.pending.size() >= line_limit)
        PutPending();
}

void ClUnilogKeeper::Init(const char* name, int level, int default_level) {
    if (state().tag.empty())
        slopen(name, state().options, state().facility);
    state().keeper_level = level;
    KeepLevels(std::min(level, default_level));
}

ClUnilogKeeper::~ClUnilogKeeper() {
    PutPending();
    state().prefix.clear();
    state().keeper_level = LOG_DEBUG;
    KeepLevels(LOG_DEBUG);
}

int ClUnilogDefaultLevel() {
    return default_log_level;
}

bool ClUnilogFlush(const char* prefix, const char* target, int level) {
    constexpr Text scheme = "syslog:";
    Text name = target;
    const std::size_t dot = name.rfind('.');
    if (!name.starts_with(scheme) || dot == Text::npos)
        return false;
    const auto facility = FindValue(std::begin(facilities), std::end(facilities),
                                    name.substr(scheme.size(), dot - scheme.size()));
    const auto priority = FindValue(std::begin(priorities), std::end(priorities), name.substr(dot + 1));
    if (!facility || !priority)
        return false;
    State& log = state();
    log.prefix = prefix;
    log.facility = *facility;
    ::openlog(log.tag.empty() ? nullptr : log.tag.c_str(), log.options, log.facility);
    KeepLevels(std::min({*priority, level, log.keeper_level}));
    return true;
}
