#pragma once

#include "units/content_filter/rule.h"

#include <cstddef>

namespace settings::content_filter {

// Warns of what makes the rule, which the proxy takes, never apply: what it should refuse would pass.
void WarnIfNeverApplied(std::size_t position, const RuleText& rule);

} // namespace settings::content_filter
