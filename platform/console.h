#pragma once

// The administrator's terminal. Every text is printf-style; a newline is added unless the text ends with one.

[[gnu::format(printf, 1, 2)]] void shell_print_error(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_info(const char* format, ...);

// Asks a yes-or-no question. Zero means no.
[[gnu::format(printf, 1, 2)]] int shell_get_user_confirmation(const char* format, ...);
