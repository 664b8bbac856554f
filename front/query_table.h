#pragma once

#include "front/unit_query.h"
#include "platform/messages.h"

#include <cstddef>
#include <string>
#include <type_traits>

// A unit's table of queries: what the key of a query's first pair stands for. Each operation gets what the
// handler has in hand, a loaded file or the whole request, and the value of that pair:
//
//     constexpr QueryRow<File&> kQueries[] = {{"check", Check}, {"update", Update}};

template <class... Subjects>
struct QueryRow {
    const char* key;
    bool (*run)(Subjects... subjects, const std::string& value);
};

// Runs the operation of the pair's key and hands on its result; a key without a row is refused.
template <std::size_t count, class... Subjects>
[[nodiscard]] bool RunQuery(const QueryRow<Subjects...> (&rows)[count], const QueryPair& pair,
                            Format<> refusal, std::type_identity_t<Subjects>... subjects) {
    for (const QueryRow<Subjects...>& row : rows) {
        if (pair.key == row.key)
            return row.run(subjects..., pair.value);
    }
    return Refuse(refusal);
}
