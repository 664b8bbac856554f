#pragma once

#include "records/conf_struct.h"
#include "tests/support/command_test.h"

#include <iterator>
#include <sstream>

namespace interfaces {

// A record of interfaces, and recorders in the place of every program that an interface command runs.
//
//     eth0  access, up, 10.0.0.1        eth3  trunk, up, with VLAN children: eth3.5 (up, 10.5.0.1) and
//     eth1  access, up, 10.1.0.1              eth3.6 (up, by DHCP), which the kernel has too
//     eth2  access, up, by DHCP         eth4  slave without a bond
//                                       eth5  the one slave of bond0
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
            "ETH3.5_VLAN 5\nETH3.5_PARENT eth3\nETH3.6_UP 1\nETH3.6_VLAN 6\nETH3.6_PARENT eth3\nETH3.6_IP "
            "dhcp\n"
            "ETH3.6_MASK dhcp\nETH3.6_BROADCAST dhcp\nETH4_CLASS slave\nETH5_CLASS slave\nETH5_MASTER bond0\n"
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

    // The DHCP server has the one interfaces and a relay the others, both from the start of the appliance on
    // unless `autostart` is "off". Names are separated by blanks.
    static void GiveToDhcp(const std::string& server, const std::string& relay,
                           const std::string& autostart = "on") {
        WriteProtected(path_list::common_settings,
                       "DHCP_SERVER " + autostart + "\nDHCP_RELAY " + autostart + "\n");
        std::string subnets;
        for (const std::string& name : Words(server))
            subnets += "<subnet address='10.0.0.0' netmask='255.255.255.0'><interface type='listen' "
                       "address='10.0.0.1'>" +
                       name + "</interface><range from='10.8.0.50' to='10.8.0.60'/></subnet>";
        support::WriteFile(SettingsFile("dhcp-server"), "<unit>" + subnets + "</unit>");
        std::string listening;
        for (const std::string& name : Words(relay))
            listening += "<interface type='listen'>" + name + "</interface>";
        support::WriteFile(SettingsFile("dhcp-relay"),
                           "<unit><dhcp-relay id='1'>" + listening + "</dhcp-relay></unit>");
    }
    static std::vector<std::string> Words(const std::string& text) {
        std::istringstream stream(text);
        return {std::istream_iterator<std::string>(stream), {}};
    }
    // The web interface has a certificate, which names the addresses.
    void Certify(const std::string& addresses) {
        support::WriteFile(SettingsFile("webui"),
                           "<unit><ssl><certificate>/mnt/main/etc/cert/a.pem</certificate></ssl></unit>");
        answers_["/sbin/ssl_cert_manage.sh"] = {addresses + "\n"};
    }
    // L2OverIP takes the frames of the interface.
    static void Switch(const std::string& device) {
        support::WriteFile("/mnt/main/etc/l2overip.conf", "mode = switch\ndevice = " + device + "\n");
    }
};

} // namespace interfaces
