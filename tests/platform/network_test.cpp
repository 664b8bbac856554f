#include "platform/cluster_file.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

using namespace support;

namespace {

using namespace corvanshell;
using namespace std::string_literals;
using NetworkTest = Appliance;

TEST_F(NetworkTest, AddressesAndMasks) {
    const auto expect = [](const char* address, const char* mask, std::int64_t number, int length,
                           const char* broadcast) {
        EXPECT_EQ(is_valid_ip(address), number >= 0) << address;
        EXPECT_EQ(address_to_number(address), number) << address;
        EXPECT_EQ(subnetmask_to_cidr(mask), length) << mask;
        EXPECT_EQ(getbrcast(address, mask), broadcast) << address << " " << mask;
        EXPECT_EQ(cidr_to_subnetmask(std::to_string(length)), length < 0 ? "" : mask);
    };
    expect("10.1.2.3", "255.255.255.0", 0x0a010203, 24, "10.1.2.255");
    expect("10.1.2.3", "0.0.0.0", 0x0a010203, 0, "255.255.255.255");
    expect("255.255.255.255", "255.255.255.255", 0xffffffff, 32, "255.255.255.255");
    expect("0.0.0.0", "255.255.255.252", 0, 30, "0.0.0.3");
    expect("10.1.2.3", "255.0.255.0", 0x0a010203, -1, "");
    expect("10.1.2", "255.255.255", -1, -1, "");
    expect("10.1.2.256", "255.255.255.0 ", -1, -1, "");
    expect(" 10.1.2.3", "dhcp", -1, -1, "");
    expect("010.1.2.3", "0x0", -1, -1, "");
    expect("::1", "", -1, -1, "");
    EXPECT_FALSE(is_valid_ip(std::string("10.1.2.3\0x", 10)));
    for (const char* length : {"", "33", "-1", "+1", " 8", "8 ", "8.0", "4294967300"})
        EXPECT_EQ(cidr_to_subnetmask(length), "") << length;
}

TEST_F(NetworkTest, DomainNames) {
    const std::string label(63, 'a');
    const std::string longest = label + "." + label + "." + label + "." + std::string(61, 'a');
    for (const std::string& name : {label, longest, "host"s, "a.example-1.com"s, "3com.net"s}) {
        const bool dotted = name.find('.') != std::string::npos;
        EXPECT_TRUE(is_valid_domain_name(name, false, false)) << name;
        EXPECT_EQ(is_valid_domain_name(name, false, true), dotted) << name;
        EXPECT_EQ(is_valid_domain_name("*." + name, true, true), name != longest) << name;
        EXPECT_FALSE(is_valid_domain_name("*." + name, false, false)) << name;
    }
    for (const std::string& name : {"*"s, "a.*.com"s, "10.1.2.3"s, "1"s, "-a.com"s, "a-.com"s, "a..com"s,
                                    "a.com."s, "a_b.com"s, "a.com\n"s, ""s, label + "a", longest + "a"}) {
        EXPECT_FALSE(is_valid_domain_name(name, true, false)) << name;
    }
}

TEST_F(NetworkTest, ChannelsOfTheClusterFile) {
    path_list::failover_settings = "/mnt/failover.ini";
    EXPECT_TRUE(failover::get_active_ifaces().empty());
    WriteFile(path_list::failover_settings, "; cluster\ndevice = outside\n"
                                            "[channel]\ndevice = eth0\n  activeip=10.0.0.1/24   # shared\n"
                                            "[sendconfig]\ndevice = eth9\nactiveip = 10.9.9.9/24\n"
                                            "[channel]\r\nactiveip = change_this\r\n#device = eth8\n"
                                            "[channel]\ndevice = eth2#1\nactiveip = 10.0.2.1/33\n"
                                            "[channel]\ndevice\nactiveip = 10.0.3.1/30");
    using List = std::vector<std::string>;
    EXPECT_EQ(failover::get_active_ifaces(), (List{"eth0", "", "eth2#1", ""}));
    EXPECT_EQ(failover::get_active_ip(), (List{"10.0.0.1/24", "change_this", "10.0.2.1/33", "10.0.3.1/30"}));
    EXPECT_EQ(failover::get_active_bcasts(), (List{"10.0.0.255", "change_this", "10.0.2.1/33", "10.0.3.3"}));
}

TEST_F(NetworkTest, LiveInterfaces) {
    MakeVeth("v1", "v0");
    EXPECT_EQ(get_int_list(), (std::vector<std::string>{"v0", "v1"}));
    EXPECT_TRUE(IsInterfaceAvailable("v0"));
    EXPECT_FALSE(IsInterfaceAvailable("v2") || IsInterfaceAvailable("") || has_wifi_adapter());
    EXPECT_TRUE(set_interface_mtu("v0", 1400));
    EXPECT_NE(ifconfig("v0").find("mtu 1400"), std::string::npos);
    (void)TakeLog();
    EXPECT_FALSE(set_interface_mtu("v0", 10) || set_interface_mtu("interface-of-long-name", 1500));
    EXPECT_EQ(TakeLog(), (std::vector<LogLine>{
                             {3, "v0: failed to set MTU to 10: Invalid argument"},
                             {3, "interface-of-long-name: failed to set MTU to 1500: no such interface"}}));
    EXPECT_EQ(Capture([] { EXPECT_EQ(ifconfig("v2") + ifconfig("-a") + ifconfig(""), ""); }), Output());
}

TEST_F(NetworkTest, DhcpDistances) {
    const auto expect = [](const Answer& answer, bool answered, const char* main, const char* default_route) {
        for (const auto& [kind, expected] :
             {std::pair("main", main), std::pair("default_route", default_route)}) {
            std::string distance = "70";
            Queue("/usr/bin/vtysh", answer);
            EXPECT_EQ(get_dhcp_distance(distance, kind), answered) << answer.out;
            EXPECT_EQ(distance, expected) << answer.out;
        }
    };
    Record("/usr/bin/vtysh");
    expect({.out = "!\nhostname a\ndistance 20 default 30\n!\n"}, true, "20", "30");
    expect({.out = " distance 20\n"}, true, "20", "20");
    expect({.out = "no distance 5\ndistance x\n"}, true, "70", "70");
    expect({.out = "distance 20\n", .err = "refused\n", .status = 1}, false, "70", "70");
    EXPECT_EQ(Commands().at(0), "/usr/bin/vtysh -d zdhcpd -c 'show running-config'");
}

TEST_F(NetworkTest, Licence) {
    (void)RunProgram({"rm", "-f", "/etc/licensed_services"});
    EXPECT_TRUE(is_service_licensed("dns"));
    WriteFile("/etc/licensed_services", "snmp\n dhcp \n");
    EXPECT_TRUE(is_service_licensed("snmp") && is_service_licensed("dhcp"));
    EXPECT_FALSE(is_service_licensed("dns") || is_service_licensed("snm"));
}

} // namespace
