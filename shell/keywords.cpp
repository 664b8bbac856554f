#include "shell/keywords.h"

#include <algorithm>
#include <iterator>

namespace shell {
namespace {

struct Keyword {
    const char* word;
    const char* help;
};

constexpr Keyword kKeywords[] = {
    {"-b", "when the time begins"},
    {"-e", "when the time ends"},
    {"action", "what becomes of what the rule takes"},
    {"address", "the address"},
    {"autoneg", "whether both ends settle the speed"},
    {"check", "checks it, in the way that follows"},
    {"command", "methods of requests, such as \"POST PUT\""},
    {"backup", "a DHCP server beside the main one"},
    {"community", "the community"},
    {"context", "the context that stands for the node"},
    {"critical", "critical errors only"},
    {"debug", "everything"},
    {"default-route", "the distance of default routes"},
    {"destination", "domains that the rule is for"},
    {"distance", "the administrative distance, 10 when it is left out"},
    {"drop", "refuses"},
    {"duplex", "whether both ends may send at once"},
    {"error", "errors and what is worse"},
    {"external", "a main DHCP server"},
    {"file", "the boot file"},
    {"full", "both ends may send at once"},
    {"gateway", "the next hop"},
    {"half", "one end at a time sends"},
    {"http", "without encryption"},
    {"https", "with encryption, by the certificate and its key"},
    {"info", "what happens, and all errors"},
    {"inform", "SNMPv2c or SNMPv3, acknowledged"},
    {"informsink", "SNMPv2c, acknowledged"},
    {"mac", "the hardware address"},
    {"match", "the next hop and its state"},
    {"md5", "by MD5"},
    {"mime-type", "content types of replies, such as video/mp4"},
    {"name", "by its name"},
    {"netmask", "the netmask"},
    {"next-hop", "the next hop"},
    {"no-check", "never checks it"},
    {"number", "by its number"},
    {"off", "switches it off"},
    {"on", "switches it on"},
    {"pass", "lets through"},
    {"position", "the place in the list, from 1"},
    {"sha", "by SHA"},
    {"slaves", "the slaves, three at most"},
    {"source", "addresses that the rule is for"},
    {"table", "the routing table, the main one when it is left out"},
    {"tcp", "by TCP"},
    {"test-address", "an address behind the gateway that is checked in its place"},
    {"trap", "SNMPv3, not acknowledged"},
    {"trap2sink", "SNMPv2c, not acknowledged"},
    {"trapsink", "SNMPv1"},
    {"udp", "by UDP"},
    {"v1", "SNMPv1"},
    {"v2", "SNMPv2c"},
    {"weight", "the weight among routes of one distance, 1 when it is left out"},
};

} // namespace

const char* KeywordHelp(const std::string& word) {
    const auto known = std::find_if(std::begin(kKeywords), std::end(kKeywords),
                                    [&](const Keyword& keyword) { return word == keyword.word; });
    return known != std::end(kKeywords) ? known->help : "";
}

} // namespace shell
