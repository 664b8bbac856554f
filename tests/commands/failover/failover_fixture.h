#pragma once

#include "tests/support/command_test.h"

#include <fcntl.h>

const std::string kClusterFile = "/etc/failover.ini";
const std::string kClusterGuard = kClusterFile + ".crg";
constexpr const char* kProgram = "/sbin/failover";
constexpr const char* kSearch = "/usr/sbin/start-stop-daemon"; // 0 when the daemon runs

// A node with one configured channel, one that nobody has configured yet, and a third interface.
class FailoverTest : public CommandTest {
protected:
    FailoverTest() {
        WriteRecord("ETH1_IP 192.168.1.1\nETH1_MASK 255.255.255.0\nETH1_BROADCAST 192.168.1.255\n"
                    "ETH2_IP 192.168.2.1\nETH2_MASK 255.255.255.0\nETH2_BROADCAST 192.168.2.255\n");
        WriteProtected(path_list::common_settings, "DHCP_SERVER off\n");
        WriteCluster(Channel("eth1", "192.168.1.3/24") + Channel("eth0", "change_this"));
        for (const char* program : {kProgram, kSearch})
            support::Record(program);
    }

    static std::string Channel(const std::string& device, const std::string& address) {
        return "[channel]\ndevice = " + device + "\nactiveip = " + address + "\n";
    }
    static void WriteCluster(const std::string& text) {
        support::WriteFile(kClusterFile, text, 0640);
        ASSERT_TRUE(corvanshell::UpdateGuardFile(kClusterGuard.c_str(), 0, kClusterFile.c_str(), nullptr));
    }
    static bool IsGuarded() {
        return corvanshell::CheckGuardFile(kClusterGuard.c_str(), kClusterFile.c_str(), nullptr);
    }
};
