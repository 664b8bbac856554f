#include "commands/routing/known_values.h"

#include "commands/routing/config_routes.h"
#include "commands/routing/static_route.h"
#include "commands/vtysh/saved_file.h"
#include "platform/processes.h"

namespace routing {
namespace {

std::set<std::string> Collect(std::string_view StaticRoute::*field) {
    std::string text;
    const std::string question = vtysh::QuestionLine(vtysh::kZebra, "show running-config");
    Routes routes;
    if (corvanshell::run((question + " 2> /dev/null").c_str(), text) == 0)
        ParseRoutes(text, routes);
    std::set<std::string> values;
    for (const auto& [destination, route] : routes)
        values.emplace(route.*field);
    return values;
}

} // namespace

std::set<std::string> RouteDestinations() {
    return Collect(&StaticRoute::destination);
}

std::set<std::string> RouteNextHops() {
    return Collect(&StaticRoute::gateway);
}

std::set<std::string> PolicyPriorities(const std::string& policy) {
    constexpr std::string_view header = "ip rule ";
    std::set<std::string> priorities;
    const auto take = [&](const std::string& line) {
        const std::size_t blank = line.find(' ', header.size());
        if (line.starts_with(header) && blank != std::string::npos &&
            (policy.empty() || line.substr(header.size(), blank - header.size()) == policy))
            priorities.insert(line.substr(blank + 1));
        return true;
    };
    return vtysh::ReadSaved(vtysh::kZebra, take, vtysh::Failure::kSilent) ? priorities
                                                                          : std::set<std::string>();
}

} // namespace routing
