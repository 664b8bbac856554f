#pragma once

#include "front/helpers/xml.h"
#include "front/unit_dispatch.h"
#include "tests/support/appliance.h"

#include <gmock/gmock.h>

namespace snmp {

using support::LogLine;
using support::Output;
using support::ReadFile;
using support::WriteFile;

constexpr const char* kCommon = "/mnt/main/etc/settings/snmp_common.xml";
constexpr const char* kUnique = "/mnt/main/etc/settings/snmp_unique.xml";
constexpr const char* kMain = "/etc/snmp/snmpd.conf";
constexpr const char* kEnvironment = "/etc/default/snmpd";
constexpr const char* kPersistent = "/var/lib/snmp/snmpd.conf";
constexpr const char* kSeed = "/mnt/main/var/lib/cvtk/snmp/engineid_seed";

// What each read of the cluster state logs where there is no cluster.
const LogLine kNoCluster{
    3, "at line 77. Failed to detect cluster state: failoverstat: No such file or directory"};

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// The text without the lines that hold `part`, at least one.
inline std::string Without(const std::string& text, const std::string& part) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += line.find(part) == std::string::npos ? line + "\n" : "";
    EXPECT_NE(result, text) << part;
    return result;
}

// Settings of every kind; the generated files beside it are what they lead to.
inline std::string Settings() {
    static const std::string text = ReadFile(SNMP_SETTINGS);
    return text;
}

class SnmpTest : public support::Appliance {
protected:
    SnmpTest() {
        InitXml();
        WriteFile("/etc/hw_pack_version", "4.2 b7\n");
        WriteFile(kCommon, Settings());
        WriteFile(kUnique, "<unit name='snmp_unique'><agent sysname='gate' syslocation='Rack 2'/></unit>");
        WriteFile(kSeed, "Seed12345678");
        WriteFile(kPersistent, "engineBoots 7\nengineBoots 8 9\noldEngineID 0x80001f8804\nsetserialno 1\n");
    }

    void Expect(const std::function<bool()>& call, bool done, const Output& output) {
        bool result = !done;
        EXPECT_EQ(support::Capture([&] { result = call(); }), output);
        EXPECT_EQ(result, done);
    }
    void Generate(bool done = true, const Output& output = {}) {
        Expect([] { return ApplyUnitUri("corvansnmp_agent"); }, done, output);
    }
};

} // namespace snmp
