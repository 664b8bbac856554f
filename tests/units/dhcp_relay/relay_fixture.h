#pragma once

#include "front/helpers/xml.h"
#include "front/unit_dispatch.h"
#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <unistd.h>

namespace settings::dhcp_relay {

constexpr const char* kSettings = "/mnt/main/etc/settings/dhcp-relay.xml";
constexpr const char* kDaemonFile = "/etc/dhcp-relay.conf";

inline std::string Unit(const std::string& relays) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-relay\">\n" + relays + "</unit>\n";
}

// eth0 and eth6 to eth8 are fit for everything; each other one has its own fault. The DHCP server has eth2.
class RelayTest : public support::Appliance {
protected:
    RelayTest() {
        InitXml();
        EXPECT_EQ(unlink(kSettings), 0); // the sample
        std::string record = "ETH3_IP 10.3.0.1\nETH3_CLASS trunk\nETH4_IP dhcp\nETH5_UP 1\n";
        for (const char* name : {"ETH0", "ETH1", "ETH2", "ETH6", "ETH7", "ETH8", "ETH9'"})
            record += std::string(name) + "_IP 10.9.0.1\n";
        for (int i = 10; i < 50; i++)
            record += "ETH" + std::to_string(i) + "_IP 10.8.0.1\n";
        WriteProtected(path_list::local_settings, record);
        support::WriteFile("/mnt/main/etc/settings/dhcp-server.xml",
                           "<unit><subnet address='10.2.0.0' netmask='255.255.0.0'><interface type='listen' "
                           "address='10.2.0.1'>eth2</interface></subnet></unit>");
    }

    static void WriteProtected(const std::string& path, const std::string& text) {
        support::WriteFile(path, text);
        ASSERT_TRUE(
            corvanshell::UpdateGuardFile(path_list::settings_guard.c_str(), 1, path.c_str(), nullptr));
    }
    static void Relays(const std::string& relays) { support::WriteFile(kSettings, Unit(relays)); }
    static void Start(const std::string& id) { support::WriteFile("/run/dhcp-relay-" + id + ".pid", "1\n"); }

    // Expects the call to return `done`, to say just this on the terminal, and to log nothing.
    void Expect(const std::function<bool()>& call, bool done, const support::Output& output) {
        bool result = !done;
        EXPECT_EQ(support::Capture([&] { result = call(); }), output);
        EXPECT_EQ(result, done);
        EXPECT_TRUE(TakeLog().empty());
    }
    // A refusal of relay `id`, which changes nothing on disk.
    void ExpectRefusal(const std::function<bool()>& call, const std::string& id, const std::string& error) {
        SCOPED_TRACE(error);
        const support::Snapshot before = support::TakeSnapshot();
        Expect(call, false, {"", "DHCP relay " + id + ": " + error + "\n"});
        support::ExpectUnchanged(before);
    }
    // The same of a request; what stands behind "unit://dhcp-relay" is given.
    void ExpectRequest(const std::string& rest, bool done, const support::Output& output) {
        SCOPED_TRACE(rest);
        Expect([&] { return ApplyUnitUri("dhcp-relay%s", rest.c_str()); }, done, output);
    }
};

} // namespace settings::dhcp_relay
