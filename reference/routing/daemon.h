#pragma once

#include "reference/routing/text.h"

#include <memory>
#include <string>

namespace reference::routing {

// What a routing daemon knows: its configuration, and how it answers. Each operation is false when the daemon
// refuses the line.
class Daemon {
public:
    virtual ~Daemon() = default;

    // One line of the configuration, or of its open section (" match from 10.0.0.1").
    [[nodiscard]] virtual bool Configure(const Words& words) = 0;
    [[nodiscard]] virtual bool Show(const Words& words, std::string& output) const = 0;

    // The configuration as its file has it; what Configure takes line by line gives the same again.
    virtual std::string Configuration() const = 0;
    // The answer to "show tables static", which is kept beside the configuration: asking for it is frequent,
    // and working it out takes a look at every route.
    virtual std::string Tables() const { return {}; }

    // Has the system do what the configuration says. False when it refused a part.
    [[nodiscard]] virtual bool Apply() const { return true; }

    bool InSection() const { return in_section_; }
    virtual void LeaveSection() { in_section_ = false; }

protected:
    void EnterSection() { in_section_ = true; }

private:
    bool in_section_ = false;
};

// Null when there is no daemon of that name.
std::unique_ptr<Daemon> MakeDaemon(const std::string& name);
// Has the daemon take a whole configuration. A line that it refuses is told on standard error.
void LoadConfiguration(Daemon& daemon, const std::string& text);

} // namespace reference::routing
