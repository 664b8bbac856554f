#pragma once

namespace settings::content_filter {

// Shows the rules and the default actions through the text pager. Every failure but the pager's is reported.
[[nodiscard]] bool ShowRules();

} // namespace settings::content_filter
