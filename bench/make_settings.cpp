// make-settings UNIT SIZE FOLDER...: see Usage().

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

namespace {

constexpr int kSubnets = 128;
constexpr int kRanges = 64;

int Usage() {
    std::cerr
        << "make-settings dhcp-server HOSTS HOST-OPTIONS   a network record and DHCP server settings with\n"
           "                                               128 subnets of HOSTS hosts, each with\n"
           "                                               HOST-OPTIONS options of its own (0 to 10)\n";
    return 1;
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

void WriteRecord(std::ostream& record) {
    for (int i = 0; i < kSubnets; ++i) {
        const std::string name = "ETH" + std::to_string(i);
        record << name << "_UP\t\t1\n"
               << name << "_IP\t\t" << Address(i, 0, 1) << '\n'
               << name << "_MASK\t255.255.0.0\n"
               << name << "_BROADCAST\t" << Address(i, 255, 255) << '\n'
               << name << "_CLASS\taccess\n";
    }
}

int MakeDhcpServer(int hosts, int options) {
    std::ofstream xml("/mnt/main/etc/settings/dhcp-server.xml");
    xml << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-server\">\n";
    for (int i = 0; i < kSubnets; ++i)
        WriteSubnet(xml, i, hosts, options);
    xml << "</unit>\n";
    std::ofstream record("/mnt/main/etc/local.conf");
    WriteRecord(record);
    return xml.flush() && record.flush() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string unit = argc > 1 ? argv[1] : "";
    if (unit == "dhcp-server" && argc == 4)
        return MakeDhcpServer(std::atoi(argv[2]), std::atoi(argv[3]));
    return Usage();
}
