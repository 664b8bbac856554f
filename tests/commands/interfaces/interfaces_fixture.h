#pragma once

#include "records/conf_struct.h"
#include "tests/commands/interfaces/command_fixture.h"

#include <map>
#include <sstream>

// A record of interfaces, and recorders in the place of every program that changes one.
//
//     eth0  access, up, 10.0.0.1        eth3  trunk, up, with the VLAN child eth3.5 (up, 10.5.0.1)
//     eth1  access, up, 10.1.0.1        eth4  slave without a bond
//     eth2  access, up, by DHCP         eth5  the one slave of bond0
class InterfacesTest : public CommandTest {
protected:
    InterfacesTest() {
        for (const char* path :
             {"/sbin/ifalias.sh", "/sbin/dhcpclient.sh", "/sbin/iphook.sh", "/sbin/if_postcmd.sh",
              "/sbin/ifsetfromconfig.sh", "/sbin/eth_speed_duplex.sh", "/sbin/apply_new_routes.sh",
              "/sbin/ifclass_check.sh", "/sbin/bonding.sh", "/sbin/ssl_cert_manage.sh", "/sbin/ethtool",
              "/bin/ping"})
            support::Record(path);
        unlink("/mnt/main/etc/l2overip.conf"); // the sample
        WriteRecord(
            Access("ETH0", "10.0.0.1") + Access("ETH1", "10.1.0.1") +
            "ETH2_UP 1\nETH2_IP dhcp\nETH2_MASK dhcp\nETH2_BROADCAST dhcp\n"
            "ETH3_UP 1\nETH3_CLASS trunk\nETH3_MTU 1400\n" +
            Access("ETH3.5", "10.5.0.1") +
            "ETH3.5_VLAN 5\nETH3.5_PARENT eth3\nETH4_CLASS slave\nETH5_CLASS slave\nETH5_MASTER bond0\n"
            "BOND0_MASTER bond0\nBOND0_BONDING_MODE active-backup\nBOND0_BONDING_MIIMON 100\n"
            "BOND0_BONDING_PRIMARY eth5\nVLAN5_COMMENT guests\n");
        CConfStruct record(path_list::local_settings, true);
        EXPECT_TRUE(record.Write()); // in the system's own form
    }
    using CConfStruct = corvanshell::CConfStruct;

    static std::string Access(const std::string& key, const std::string& address) {
        const std::string network = address.substr(0, address.rfind('.'));
        return key + "_UP 1\n" + key + "_IP " + address + "\n" + key + "_MASK 255.255.255.0\n" + key +
               "_BROADCAST " + network + ".255\n" + key + "_CLASS access\n";
    }

    // The record's lines by key, with single blanks.
    static std::map<std::string, std::string> Lines() {
        std::map<std::string, std::string> lines;
        std::istringstream text(support::ReadFile(path_list::local_settings));
        for (std::string line; std::getline(text, line);) {
            const std::size_t tab = line.find('\t');
            const std::size_t value = line.find_first_not_of('\t', tab);
            lines[line.substr(0, tab)] = value != std::string::npos ? line.substr(value) : "";
        }
        return lines;
    }

    using Saved = std::map<std::string, std::string>;

    // Expects the call to do just this, and the record to differ in just these keys; the value "-" stands for
    // a key that is gone.
    void ExpectChange(const std::function<bool()>& call, const Effect& effect, const Saved& saved,
                      const std::string& input = "") {
        Saved expected = Lines();
        Expect(call, effect, input);
        for (const auto& [key, value] : saved)
            expected[key] = value;
        std::erase_if(expected, [](const auto& line) { return line.second == "-"; });
        EXPECT_EQ(Lines(), expected);
    }

    static void Alter(const std::function<void(CConfStruct&)>& change) {
        CConfStruct record(path_list::local_settings, true);
        change(record);
        EXPECT_TRUE(record.Write());
    }
    static void AlterEntry(const std::string& name,
                           const std::function<void(corvanshell::InterfaceEntry&)>& change) {
        Alter([&](CConfStruct& record) {
            corvanshell::InterfaceEntry entry;
            EXPECT_TRUE(record.FindInterface(name, entry));
            change(entry);
            record.AddInterface(name, entry, true);
        });
    }

    // The DHCP server has eth0 and a relay eth1, both from the start of the appliance on.
    static void GiveToDhcp(const std::string& server, const std::string& relay) {
        WriteProtected(path_list::common_settings, "DHCP_SERVER on\nDHCP_RELAY on\n");
        support::WriteFile(
            SettingsFile("dhcp-server"),
            "<unit><subnet address='10.0.0.0' netmask='255.255.255.0'><interface type='listen' "
            "address='10.0.0.1'>" +
                server + "</interface></subnet></unit>");
        support::WriteFile(SettingsFile("dhcp-relay"), "<unit><dhcp-relay id='1'><interface type='listen'>" +
                                                           relay + "</interface></dhcp-relay></unit>");
    }
};
