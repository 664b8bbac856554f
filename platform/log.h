#pragma once

#include <cstdarg>

// The system log. Levels are syslog(3)'s numbers: 3 is an error, 4 a warning, 6 information.

constexpr int kLogError = 3;
constexpr int kLogWarning = 4;
constexpr int kLogInfo = 6;

void slopen(const char* tag, int options, int facility);
[[gnu::format(printf, 2, 3)]] void slput(int level, const char* format, ...);
void slclose();

[[gnu::format(printf, 1, 2)]] void shell_log_error(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_log_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_log_info(const char* format, ...);

// One piece of a log text: a line is written when its newline arrives. `flags` is 0 for plain text.
[[gnu::format(printf, 3, 0)]] void shell_log_event(int level, int flags, const char* format,
                                                   va_list arguments);

// Keeps the program's own log open for as long as it lives.
class ClUnilogKeeper {
public:
    ClUnilogKeeper() = default;
    ~ClUnilogKeeper();
    ClUnilogKeeper(const ClUnilogKeeper&) = delete;
    ClUnilogKeeper& operator=(const ClUnilogKeeper&) = delete;

    // `name` is the program's name in the log; texts up to `level` are kept, up to `default_level` where
    // no target says otherwise.
    void Init(const char* name, int level, int default_level);
};

int ClUnilogDefaultLevel();

// Sends the program's own log to `target`, "syslog:<facility>.<priority>" with syslog.conf(5)'s names.
// `prefix` stands before each line. False when the target is of no known form.
bool ClUnilogFlush(const char* prefix, const char* target, int level);
