#pragma once

#include "records/conf_struct.h"
#include "tests/support/command_test.h"

namespace interfaces {

// A record of interfaces, and recorders in the place of every program that an interface command runs.
//
//     eth0  access, up, 10.0.0.1        eth3  trunk, up, with the VLAN child eth3.5 (up, 10.5.0.1)
//     eth1  access, up, 10.1.0.1        eth4  slave without a bond
//     eth2  access, up, by DHCP         eth5  the one slave of bond0
class InterfacesTest : public CommandTest {
protected:
    using CConfStruct = corvanshell::CConfStruct;
    using InterfaceEntry = corvanshell::InterfaceEntry;

    InterfacesTest() {
        // Interfaces of the kernel's, for what no program does.
        support::MakeVeth("eth1", "bond2");
        support::MakeVeth("eth3", "eth3.6");
        for (const char* script :
             {"ifalias", "dhcpclient", "iphook", "if_postcmd", "ifsetfromconfig", "eth_speed_duplex",
              "apply_new_routes", "ifclass_check", "bonding", "ssl_cert_manage"})
            support::Record("/sbin/" + std::string(script) + ".sh");
        for (const char* program : {"/sbin/ip", "/sbin/ifconfig", "/bin/ip", "/sbin/ethtool", "/bin/ping"})
            support::Record(program);
        support::WriteFile("/sbin/usb-modem-device.sh", "#!/bin/sh\nexit 1\n", 0755);
        unlink("/mnt/main/etc/l2overip.conf"); // the sample
        WriteProtected(path_list::common_settings, "");
        WriteRecord(
            Access("ETH0", "10.0.0.1") + Access("ETH1", "10.1.0.1") +
            "ETH2_UP 1\nETH2_IP dhcp\nETH2_MASK dhcp\nETH2_BROADCAST dhcp\n"
            "ETH3_UP 1\nETH3_CLASS trunk\nETH3_MTU 1400\n" +
            Access("ETH3.5", "10.5.0.1") +
            "ETH3.5_VLAN 5\nETH3.5_PARENT eth3\nETH4_CLASS slave\nETH5_CLASS slave\nETH5_MASTER bond0\n"
            "BOND0_MASTER bond0\nBOND0_BONDING_MODE active-backup\nBOND0_BONDING_MIIMON 100\n"
            "BOND0_BONDING_PRIMARY eth5\nVLAN5_COMMENT guests\n");
        Alter([](CConfStruct&) {}); // into the system's own form
    }

    static std::string Access(const std::string& key, const std::string& address) {
        const std::string network = address.substr(0, address.rfind('.'));
        return key + "_UP 1\n" + key + "_IP " + address + "\n" + key + "_MASK 255.255.255.0\n" + key +
               "_BROADCAST " + network + ".255\n" + key + "_CLASS access\n";
    }
    static void Alter(const std::function<void(CConfStruct&)>& change) {
        CConfStruct record(path_list::local_settings, true);
        change(record);
        EXPECT_TRUE(record.Write());
    }
    static void AlterEntry(const std::string& name, const std::function<void(InterfaceEntry&)>& change) {
        Alter([&](CConfStruct& record) {
            InterfaceEntry entry;
            EXPECT_TRUE(record.FindInterface(name, entry));
            change(entry);
            record.AddInterface(name, entry, true);
        });
    }

    // The DHCP server has the one interface and a relay the other, both from the start of the appliance on.
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
    // L2OverIP takes the frames of the interface.
    static void Switch(const std::string& device) {
        support::WriteFile("/mnt/main/etc/l2overip.conf", "mode = switch\ndevice = " + device + "\n");
    }
};

} // namespace interfaces
