#include "tests/units/snmp/snmp_fixture.h"
#include "units/snmp/agent_settings.h"

namespace snmp {
namespace {

constexpr const char* kOld = "/mnt/main/old.xml";

std::string Old(const std::string& agent) {
    return "<snmp><agent>" + agent + "</agent></snmp>";
}

// Settings() with what every conversion leaves of its communities, modes and SNMPv2c trap receivers.
std::string Emptied() {
    return Replaced(Replaced(Without(Settings(), "trap2sink"), R"(<access>
      <community name="site"/>
      <community name="lab"/>
      <community name="site"/>
    </access>)",
                             "<access/>"),
                    "v2_traps=\"on", "v2_traps=\"off");
}

std::string WithPort(const std::string& protocol, const std::string& port) {
    return Replaced(Emptied(), "<port protocol=\"udp\">161</port>",
                    "<port protocol=\"" + protocol + "\"" + (port.empty() ? "/>" : ">" + port + "</port>"));
}

TEST_F(SnmpTest, ConversionTakesOver) {
    const std::string trap_names = "<access><trapcommunity name='t'/></access>";
    const struct {
        std::string old;
        std::string expected;
    } cases[] = {
        {"<port>tcp:1161</port>", WithPort("tcp", "1161")},
        {"<port>tcp:abc</port>", WithPort("tcp", "161")},
        {"<port>tcp:1:2</port>", WithPort("tcp", "161")},
        {"<port>161</port>", WithPort("udp", "")},
        {"<port>sctp:7</port><log level='debug'/>", Replaced(WithPort("udp", "7"), "\"info", "\"debug")},
        {"<access><rocommunity name='a'/><rocommunity name='b'/></access>",
         Replaced(WithPort("udp", ""), "<access/>",
                  "<access>\n      <community name=\"a\"/>\n    </access>")},
        {trap_names + "<trap2sink destination='null'/>", WithPort("udp", "")},
        {"<trap2sink destination='10.0.0.6'/>", WithPort("udp", "")},
        {trap_names + "<trap2sink destination='10.0.0.6'/>",
         Replaced(Replaced(WithPort("udp", ""), "v2_traps=\"off", "v2_traps=\"on"), "  </agent>",
                  "    <trapsink destination=\"10.0.0.6\" community=\"t\" type=\"trap2sink\" port=\"162\" "
                  "prot=\"udp\"/>\n  </agent>")},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.old);
        WriteFile(kCommon, Replaced(Settings(), "v2_mode=\"on", "v2_mode=\"off"));
        WriteFile(kOld, Old(row.old));
        Expect([] { return ApplyUnitUri("corvansnmp_agent?convert-daemon-settings=%s&x=y", kOld); }, true,
               {});
        EXPECT_EQ(ReadFile(kCommon), row.expected);
        EXPECT_EQ(support::ModeOf(kCommon), 0600U);
    }
    WriteFile("/mnt/main/etc/settings/vpn-snmpd.xml", Old("<port>tcp:1161</port>"));
    Expect([] { return ApplyUnitUri("corvansnmp_agent?convert-daemon-settings"); }, true, {});
    EXPECT_EQ(GetPort(), "1161");
    EXPECT_EQ(TakeLog()[0], (LogLine{6, "SNMP: query: convert-daemon-settings"}));
}

TEST_F(SnmpTest, ConversionIsAllOrNothing) {
    const std::string old =
        Old("<log level='info'/><port>tcp:1</port><access><rocommunity name='a'/></access>");
    const std::string missing = std::string(kOld) + ".gone";
    const struct {
        std::string query;
        std::string old;
        std::string settings;
        std::string error;
    } cases[] = {
        {"check", old, Settings(), "SNMP: wrong query format"},
        {"convert-daemon-settings=" + missing, old, Settings(),
         "SNMP: " + missing + ": failed to read settings: No such file or directory"},
        {"", "<snmp>", Settings(), "vpn-snmpd: failed to parse configuration"},
        {"", old, "<unit>", "snmp_common: failed to parse configuration"},
        {"", old, Without(Settings(), "<log"), "SNMP: failed to set log level"},
        {"", old, Without(Settings(), "<port"), "SNMP: failed to set agent port"},
        {"", old, "<unit><agent><log/><port/></agent></unit>", "SNMP: failed to add community"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.error);
        const std::string query =
            row.query.empty() ? std::string("convert-daemon-settings=") + kOld : row.query;
        WriteFile(kOld, row.old);
        WriteFile(kCommon, row.settings);
        const support::Snapshot before = support::TakeSnapshot();
        Expect([&] { return ApplyUnitUri("corvansnmp_agent?%s", query.c_str()); }, false,
               {"", row.error + "\n"});
        support::ExpectUnchanged(before);
    }
}

} // namespace
} // namespace snmp
