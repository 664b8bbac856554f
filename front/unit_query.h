#pragma once

#include <string>
#include <vector>

struct _xmlURI;

// The query of a unit URI, "unit://<unit>?<key>=<value>&<key>...#<fragment>".

// One pair of a query, in the raw bytes of the URI: nothing is percent-decoded.
struct QueryPair {
    std::string key;
    std::string value;

    bool operator==(const QueryPair&) const = default;
};

using QueryList = std::vector<QueryPair>;

// The pairs in the order of the URI; a key may be repeated. A pair without key and value is left out. Empty
// for a null URI and for one without a query.
QueryList ParseUnitQuery(const _xmlURI* uri);

// Whether the URI has a query at all, an empty one among them.
bool HasUnitQuery(const _xmlURI* uri);

// The URI's fragment, "" when it has none.
std::string GetUnitFragment(const _xmlURI* uri);
