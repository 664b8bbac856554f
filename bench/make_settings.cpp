// make-settings UNIT SIZE...: writes large settings of a unit, see kUsage.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

constexpr int kSubnets = 128;
constexpr int kRanges = 64;

constexpr char kUsage[] =
    "make-settings dhcp-server HOSTS HOST-OPTIONS   128 subnets of HOSTS hosts, each with HOST-OPTIONS "
    "options of\n"
    "                                               its own (0 to 10), and the network record they need\n"
    "make-settings dhcp-relay RELAYS                relays of two servers, and the network record they need\n"
    "make-settings snmp USERS                       users with four trap receivers each\n"
    "make-settings content-filter RULES             rules of four fields\n";

std::ofstream OpenUnit(const std::string& unit) {
    std::ofstream xml("/mnt/main/etc/settings/" + unit + ".xml");
    xml << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"" << unit << "\">\n";
    return xml;
}

bool Finish(std::ofstream& xml) {
    return static_cast<bool>(xml << "</unit>\n" << std::flush);
}

std::string Address(int subnet, int third, int fourth) {
    return "10." + std::to_string(subnet) + "." + std::to_string(third) + "." + std::to_string(fourth);
}

// Ten options as a level may have them, the first `count` of them; a router only where none is set above.
void WriteOptions(std::ostream& xml, int subnet, int count) {
    const std::string server = Address(subnet, 0, 1);
    const std::string options[] = {
        "<option name=\"subnet-mask\">255.255.0.0</option>",
        "<option name=\"broadcast-address\">" + Address(subnet, 255, 255) + "</option>",
        "<option name=\"routers\"><address>" + server + "</address></option>",
        "<option name=\"domain-name-servers\"><address>" + server + "</address></option>",
        "<option name=\"ntp-servers\"><address>" + server + "</address></option>",
        "<option name=\"netbios-name-servers\"><address>" + server + "</address></option>",
        "<option name=\"domain-name\">net" + std::to_string(subnet) + ".example</option>",
        "<option name=\"tftp-server\" file=\"boot.img\">" + server + "</option>",
        "<option num=\"200\" type=\"ascii\">some text</option>",
        "<option num=\"201\" type=\"ip\">" + server + "</option>",
    };
    for (int i = 0; i < count; ++i)
        xml << "    " << options[i] << '\n';
}

void WriteHosts(std::ostream& xml, int subnet, int hosts, int options) {
    char mac[40];
    for (int i = 0; i < hosts; ++i) {
        std::snprintf(mac, sizeof mac, "02:00:%02x:00:%02x:%02x", subnet, i / 256, i % 256);
        xml << "    <host name=\"pc-" << subnet << "-" << i << "\">\n      <hardware type=\"ethernet\" mac=\""
            << mac << "\"/>\n      <address>" << Address(subnet, 128 + i / 250, 2 + i % 250)
            << "</address>\n";
        WriteOptions(xml, subnet, options);
        xml << "    </host>\n";
    }
}

void WriteSubnet(std::ostream& xml, int subnet, int hosts, int options) {
    xml << "  <subnet address=\"" << Address(subnet, 0, 0) << "\" netmask=\"255.255.0.0\">\n"
        << "    <interface type=\"listen\" address=\"" << Address(subnet, 0, 1) << "\">eth" << subnet
        << "</interface>\n";
    WriteOptions(xml, subnet, 10);
    for (int i = 1; i <= kRanges; ++i)
        xml << "    <range from=\"" << Address(subnet, i, 1) << "\" to=\"" << Address(subnet, i, 200)
            << "\"/>\n";
    WriteHosts(xml, subnet, hosts, options);
    xml << "  </subnet>\n";
}

// A network record of access interfaces, each in a network of its own.
bool WriteRecord(int interfaces) {
    std::ofstream record("/mnt/main/etc/local.conf");
    for (int i = 0; i < interfaces; ++i) {
        const std::string name = "ETH" + std::to_string(i);
        const std::string net = std::to_string(10 + i / 256) + "." + std::to_string(i % 256);
        record << name << "_UP\t\t1\n"
               << name << "_IP\t\t" << net << ".0.1\n"
               << name << "_MASK\t255.255.0.0\n"
               << name << "_BROADCAST\t" << net << ".255.255\n"
               << name << "_CLASS\taccess\n";
    }
    return static_cast<bool>(record.flush());
}

bool MakeDhcpServer(int hosts, int options) {
    std::ofstream xml = OpenUnit("dhcp-server");
    for (int i = 0; i < kSubnets; ++i)
        WriteSubnet(xml, i, hosts, options);
    return Finish(xml) && WriteRecord(kSubnets);
}

bool MakeDhcpRelay(int relays) {
    std::ofstream xml = OpenUnit("dhcp-relay");
    for (int i = 1; i <= relays; ++i)
        xml << "  <dhcp-relay id=\"" << i << "\">\n    <interface type=\"listen\">eth" << i
            << "</interface>\n    <server id=\"0\" interface=\"eth0\">10.0.0.5</server>\n"
               "    <server id=\"1\" interface=\"eth0\">10.0.0.6</server>\n  </dhcp-relay>\n";
    return Finish(xml) && WriteRecord(relays + 1);
}

bool MakeSnmp(int users) {
    std::ofstream xml = OpenUnit("snmp_common");
    xml << "  <agent v2_mode=\"off\" v3_mode=\"on\" v2_traps=\"off\" v3_traps=\"on\" syscontact=\"\">\n"
           "    <log level=\"info\"/>\n    <port protocol=\"udp\">161</port>\n    <access/>\n    "
           "<cluster/>\n";
    for (int i = 0; i < users; ++i) {
        xml << "    <user name=\"user" << i << "\" pass=\"password" << i
            << "\" read=\"on\" auth_type=\"sha\" encryption=\"on\" priv_key=\"key-of-user-" << i
            << "\" trapsess=\"on\">\n";
        for (int k = 1; k <= 4; ++k)
            xml << "      <trapsess destination=\"10.0.0." << k
                << "\" port=\"162\" prot=\"udp\" type=\"trap\"/>\n";
        xml << "    </user>\n";
    }
    xml << "  </agent>\n";
    return Finish(xml);
}

bool MakeContentFilter(int rules) {
    std::ofstream xml = OpenUnit("content-filter");
    xml << "  <mode>on</mode>\n  <default-request-action value=\"pass\"/>\n";
    for (int i = 1; i <= rules; ++i)
        xml << "  <rule name=\"rule_" << i << "\">\n    <source>" << Address(i / 256, i % 256, 0)
            << "/24</source>\n    <destination>.site" << i
            << ".example</destination>\n    <http-command>POST</http-command>\n    <action>drop</action>\n"
               "  </rule>\n";
    return Finish(xml);
}

} // namespace

int main(int argc, char** argv) {
    const std::string unit = argc > 1 ? argv[1] : "";
    const int size = argc > 2 ? std::atoi(argv[2]) : 0;
    if (unit == "dhcp-server" && argc == 4)
        return MakeDhcpServer(size, std::atoi(argv[3])) ? 0 : 1;
    if (unit == "dhcp-relay" && argc == 3)
        return MakeDhcpRelay(size) ? 0 : 1;
    if (unit == "snmp" && argc == 3)
        return MakeSnmp(size) ? 0 : 1;
    if (unit == "content-filter" && argc == 3)
        return MakeContentFilter(size) ? 0 : 1;
    std::cerr << kUsage;
    return 2;
}
