#include "scratch.h"

#include "platform/cluster_file.h"
#include "platform/network.h"
#include "platform/path_list.h"

namespace {

using namespace corvanshell;
using Network = Scratch;

TEST_F(Network, AddressesAndMasks) {
    const struct {
        const char* address;
        const char* mask;
        std::int64_t number;
        int length;
        const char* broadcast;
    } cases[] = {
        {"10.1.2.3", "255.255.255.0", 0x0a010203, 24, "10.1.2.255"},
        {"10.1.2.3", "0.0.0.0", 0x0a010203, 0, "255.255.255.255"},
        {"255.255.255.255", "255.255.255.255", 0xffffffff, 32, "255.255.255.255"},
        {"0.0.0.0", "255.255.255.252", 0, 30, "0.0.0.3"},
        {"10.1.2.3", "255.0.255.0", 0x0a010203, -1, ""},
        {"10.1.2", "255.255.255", -1, -1, ""},
        {"10.1.2.256", "255.255.255.0 ", -1, -1, ""},
        {" 10.1.2.3", "dhcp", -1, -1, ""},
        {"010.1.2.3", "0x0", -1, -1, ""},
        {"::1", "", -1, -1, ""},
    };
    for (const auto& [address, mask, number, length, broadcast] : cases) {
        EXPECT_EQ(is_valid_ip(address), number >= 0) << address;
        EXPECT_EQ(address_to_number(address), number) << address;
        EXPECT_EQ(subnetmask_to_cidr(mask), length) << mask;
        EXPECT_EQ(getbrcast(address, mask), broadcast) << address << " " << mask;
        if (length >= 0) {
            EXPECT_EQ(cidr_to_subnetmask(std::to_string(length)), mask);
        }
    }
    EXPECT_FALSE(is_valid_ip(std::string("10.1.2.3\0x", 10)));
    for (const char* length : {"", "33", "-1", "+1", " 8", "8 ", "8.0", "4294967300"})
        EXPECT_EQ(cidr_to_subnetmask(length), "") << length;
}

TEST_F(Network, DomainNames) {
    const std::string label(63, 'a');
    const std::string longest = label + "." + label + "." + label + "." + std::string(61, 'a');
    const struct {
        std::string name;
        bool plain, wildcard, dotted;
    } cases[] = {
        {"host", true, true, false},
        {"a.example-1.com", true, true, true},
        {"3com.net", true, true, true},
        {"*.example.com", false, true, false},
        {"*", false, false, false},
        {"a.*.com", false, false, false},
        {"10.1.2.3", false, false, false},
        {"1", false, false, false},
        {"-a.com", false, false, false},
        {"a-.com", false, false, false},
        {"a..com", false, false, false},
        {"a.com.", false, false, false},
        {"a_b.com", false, false, false},
        {"a.com\n", false, false, false},
        {"", false, false, false},
        {label, true, true, false},
        {label + "a", false, false, false},
        {longest, true, true, true},
        {longest + "a", false, false, false},
    };
    for (const auto& [name, plain, wildcard, dotted] : cases) {
        EXPECT_EQ(is_valid_domain_name(name, false, false), plain) << name;
        EXPECT_EQ(is_valid_domain_name(name, true, false), wildcard) << name;
        EXPECT_EQ(is_valid_domain_name(name, false, true), dotted) << name;
    }
}

TEST_F(Network, ChannelsOfTheClusterFile) {
    path_list::failover_settings = path("failover.ini");
    EXPECT_TRUE(failover::get_active_ifaces().empty());
    write(path_list::failover_settings, "; cluster\n"
                                        "device = outside\n"
                                        "[channel]\n"
                                        "device = eth0\n"
                                        "  activeip=10.0.0.1/24   # shared\n"
                                        "[sendconfig]\n"
                                        "device = eth9\n"
                                        "activeip = 10.9.9.9/24\n"
                                        "[channel]\r\n"
                                        "activeip = change_this\r\n"
                                        "#device = eth8\n"
                                        "[channel]\n"
                                        "device = eth2:1\n"
                                        "activeip = 10.0.2.1/33\n"
                                        "[channel]\n"
                                        "device\n"
                                        "activeip = 10.0.3.1/30");
    using List = std::vector<std::string>;
    EXPECT_EQ(failover::get_active_ifaces(), (List{"eth0", "", "eth2:1", ""}));
    EXPECT_EQ(failover::get_active_ip(), (List{"10.0.0.1/24", "change_this", "10.0.2.1/33", "10.0.3.1/30"}));
    EXPECT_EQ(failover::get_active_bcasts(), (List{"10.0.0.255", "change_this", "10.0.2.1/33", "10.0.3.3"}));
}

} // namespace
