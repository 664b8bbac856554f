#pragma once

#include "front/helpers/xml.h"
#include "platform/guards.h"
#include "tests/support/appliance.h"

#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

// An appliance with a DHCP server to settle: eth1 and eth2 serve 192.168.1.0/24 and 192.168.2.0/24.
class ServerAppliance : public support::Appliance {
protected:
    static constexpr const char* kSettings = "/mnt/main/etc/settings/dhcp-server.xml";
    static constexpr const char* kLocal = "/mnt/main/etc/local.conf";
    static constexpr const char* kCommon = "/mnt/main/etc/common.conf";
    static constexpr const char* kConf = "/etc/dhcp/dhcpd.conf";
    static constexpr const char* kExtra = "/etc/default/isc-dhcp-server";

    ServerAppliance() {
        InitXml();
        WriteRecord(kCommon, "");
        WriteRecord(kLocal, Interface("ETH1", "192.168.1.1") + Interface("ETH2", "192.168.2.1"));
    }
    ~ServerAppliance() override { CleanupXml(); }

    static void WriteRecord(const char* path, const std::string& text) {
        support::WriteFile(path, text);
        ASSERT_TRUE(corvanshell::UpdateGuardFile("/mnt/main/etc/settings.crg", 1, path, nullptr));
    }

    static std::string Interface(const std::string& name, const std::string& address, bool up = true,
                                 const std::string& interface_class = "access") {
        return name + "_UP " + (up ? "1" : "0") + "\n" + name + "_IP " + address + "\n" + name +
               "_MASK 255.255.255.0\n" + name + "_CLASS " + interface_class + "\n";
    }

    // The settings file, given what stands in its root.
    static void WriteSettings(const std::string& text) {
        support::WriteFile(kSettings, "<unit name=\"dhcp-server\">" + text + "</unit>");
    }

    // The subnet of eth1, given what stands behind its interface.
    static std::string Subnet1(const std::string& text) {
        return "<subnet address='192.168.1.0' netmask='255.255.255.0'>"
               "<interface type='listen' address='192.168.1.1'>eth1</interface>" +
               text + "</subnet>";
    }

    // The same of eth2.
    static std::string Subnet2(const std::string& text) {
        return "<subnet address='192.168.2.0' netmask='255.255.255.0'>"
               "<interface type='listen' address='192.168.2.1'>eth2</interface>" +
               text + "</subnet>";
    }

    static std::string Remote(const std::string& address, const std::string& interface,
                              const std::string& text = "") {
        return "<subnet address='" + address + "' netmask='255.255.0.0'><interface type='relay'>" +
               interface + "</interface>" + text + "</subnet>";
    }

    static std::string Host(const std::string& name, const std::string& address,
                            const std::string& text = "") {
        return "<host name='" + name + "'><hardware type='ethernet' mac='02:00:00:00:00:01'/><address>" +
               address + "</address>" + text + "</host>";
    }

    // What the call writes at a terminal where the answer was typed ahead.
    static support::Output AtTerminal(const std::string& answer, const std::function<void()>& call) {
        const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
        const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_EQ(write(master, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
        const auto output = support::Capture([&] {
            dup2(slave, STDIN_FILENO);
            call();
        });
        close(slave);
        close(master);
        return output;
    }
};
