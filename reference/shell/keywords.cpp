#include "reference/shell/keywords.h"

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
    {"check", "checks the next hop"},
    {"command", "methods of requests, such as \"POST PUT\""},
    {"community", "the community"},
    {"context", "the context that stands for the node"},
    {"default-route", "the distance of default routes"},
    {"destination", "domains that the rule is for"},
    {"distance", "the administrative distance, 10 when it is left out"},
    {"drop", "refuses"},
    {"duplex", "whether both ends may send at once"},
    {"file", "the boot file"},
    {"full", "both ends may send at once"},
    {"gateway", "the next hop"},
    {"half", "one end at a time sends"},
    {"inform", "SNMPv2c or SNMPv3, acknowledged"},
    {"mac", "the hardware address"},
    {"match", "the next hop and its state"},
    {"mime-type", "content types of replies, such as video/mp4"},
    {"name", "by its name"},
    {"netmask", "the netmask"},
    {"next-hop", "the next hop"},
    {"no-check", "takes the next hop for good"},
    {"number", "by its number"},
    {"off", "switches it off"},
    {"on", "switches it on"},
    {"pass", "lets through"},
    {"position", "the place in the list, from 1"},
    {"slaves", "the slaves, three at most"},
    {"source", "addresses that the rule is for"},
    {"table", "the routing table, the main one when it is left out"},
    {"tcp", "by TCP"},
    {"test-address", "an address behind the gateway that is checked in its place"},
    {"trap", "SNMPv3, not acknowledged"},
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
