#pragma once

struct _xmlURI;

// A unit's entry point. The URI stays the dispatcher's.
using UnitHandler = bool (*)(const _xmlURI* uri);

struct UnitEntry {
    const char* name;
    UnitHandler handler;
};

// Hands a request to the unit that it names, or to all units in their order when it names "all". The
// printf-style text is the unit URI without its "unit://" and is cut silently at 8184 bytes. True when each
// unit asked has returned true; an unknown unit is false without a message.
[[nodiscard, gnu::format(printf, 1, 2)]] bool ApplyUnitUri(const char* format, ...);
