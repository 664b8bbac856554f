#include "front/unit_query.h"

#include <algorithm>
#include <libxml/uri.h>
#include <string_view>

QueryList ParseUnitQuery(const xmlURI* uri) {
    QueryList pairs;
    if (!HasUnitQuery(uri))
        return pairs;
    std::string_view rest = uri->query_raw;
    while (!rest.empty()) {
        const std::string_view text = rest.substr(0, rest.find('&'));
        const std::size_t sign = std::min(text.find('='), text.size());
        QueryPair pair{std::string(text.substr(0, sign)), ""};
        if (sign < text.size())
            pair.value = text.substr(sign + 1);
        if (!pair.key.empty() || !pair.value.empty())
            pairs.push_back(std::move(pair));
        rest.remove_prefix(std::min(text.size() + 1, rest.size()));
    }
    return pairs;
}

bool HasUnitQuery(const xmlURI* uri) {
    return uri != nullptr && uri->query_raw != nullptr;
}

std::string GetUnitFragment(const xmlURI* uri) {
    return uri != nullptr && uri->fragment != nullptr ? uri->fragment : "";
}
