#pragma once

#include "commands/dgd/dgd_config.h"
#include "tests/commands/routing/routing_fixture.h"

namespace dgd {

inline const support::LogLine kDone{6, "DGD command done."};
inline const support::Output kNothing{"", ""};
inline const char* const kFailed = "DGD command failed.";
inline const char* const kNotExecuted = "DGD command can not be executed.";

class DgdTest : public RoutingAppliance {
protected:
    using Action = std::function<bool()>;

    struct Refusal {
        Action action;
        std::string error;
    };

    static void Start() { EXPECT_EQ(support::RunProgram({"/sbin/dgd.sh", "start"}).status, 0); }

    // The stand-in's configuration as it is kept for the next start; the same as the running one.
    static std::string Saved() {
        const std::string text = support::ReadFile(kDgddFile);
        EXPECT_EQ(Show("show running-config", "dgdd"), text);
        return text;
    }

    // The part of it behind the settings.
    static std::string Sections() {
        const std::string text = Saved();
        return text.substr(text.find("!\n", 2) + 2);
    }

    static void ExpectRefusals(const std::vector<Refusal>& refusals) {
        for (const auto& [action, error] : refusals) {
            EXPECT_EQ(Do(false, action), (support::Output{"", error + "\n"}));
        }
    }
};

} // namespace dgd
