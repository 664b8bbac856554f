#include "platform/console.h"
#include "shell/families.h"
#include "shell/secret.h"
#include "shell/snmp_view.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/communities.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/unit.h"
#include "units/snmp/users.h"

#include <algorithm>

namespace shell {
namespace {

using namespace snmp;
using Text = const std::string&;

// Two of one name could not be told apart.
bool IsFree(const char* what, Text name, const std::vector<std::string>& names) {
    if (std::find(names.begin(), names.end(), name) == names.end())
        return true;
    shell_print_error("%s %s already exists", what, name.c_str());
    return false;
}

bool IsUserFree(Text name) {
    return IsFree("user", name, ListUserNames());
}

bool IsCommunityFree(Text name) {
    return IsFree("community", name, ListCommunities());
}

bool AddUserWithPassword(Text name, Text auth_type) {
    std::string password;
    return IsUserFree(name) && AskSecret("password", password) && AddUser(name, password, auth_type);
}

bool ChangePassword(Text name) {
    std::string password;
    return AskSecret("password", password) && SetUserPassword(name, password);
}

// Encryption needs the key that it is switched on with.
bool Encrypt(Text name) {
    std::string key;
    return AskSecret("privacy key", key) && SetUserPrivKey(name, key) && SetUserEncryption(name, "on");
}

bool DontEncrypt(Text name) {
    return SetUserEncryption(name, "off") && DeleteUserPrivKey(name);
}

constexpr Command kCommands[] = {
    {"snmp", "the SNMP agent"},
    {"snmp show", "shows the settings, without passwords and keys", kCall<&ShowSnmpSettings>, kShows},
    {"snmp generate", "writes the daemon's files from the settings", [] { return SnmpAgentUnit(nullptr); }},
    {"snmp autostart <on|off>", "says whether the daemon starts with the appliance", kCall<&SetAutostart>},
    {"snmp log-level <debug|info|error|critical|off>", "sets what is logged", kCall<&SetLogLevel>},
    {"snmp port <1..65535> <udp|tcp>", "sets where the daemon listens", kCall<&SetPort>},
    {"snmp system", "what the appliance says of itself"},
    {"snmp system name <text>", "sets this node's name", kCall<&SetSysName>},
    {"snmp system contact <text>", "sets who is to be asked", kCall<&SetSysContact>},
    {"snmp system location <text>", "sets this node's place", kCall<&SetSysLocation>},
    {"snmp v2", "SNMPv1 and SNMPv2c"},
    {"snmp v2 reading <on|off>", "lets communities read", kCall<&SetV2Mode>},
    {"snmp v2 traps", "traps by SNMPv1 and SNMPv2c"},
    {"snmp v2 traps on", "sends traps", kCall<&EnableV2Traps>},
    {"snmp v2 traps off", "sends no traps", kCall<&DisableV2Traps>},
    {"snmp v3", "SNMPv3"},
    {"snmp v3 reading <on|off>", "lets users read", kCall<&SetV3Mode>},
    {"snmp v3 traps", "traps by SNMPv3"},
    {"snmp v3 traps on", "sends traps", kCall<&EnableV3Traps>},
    {"snmp v3 traps off", "sends no traps", kCall<&DisableV3Traps>},
    {"snmp community", "communities that may read"},
    {"snmp community add <word>", "adds a community",
     [](Text name) { return IsCommunityFree(name) && AddCommunity(name); }},
    {"snmp community rename <community> <word>", "gives a community another name",
     [](Text name, Text new_name) { return IsCommunityFree(new_name) && RenameCommunity(name, new_name); }},
    {"snmp community delete <community>", "removes a community", kCall<&DeleteCommunity>},
    {"snmp trap-receiver", "receivers of SNMPv1 and SNMPv2c traps"},
    {"snmp trap-receiver add <v1|v2|inform> <server> <1..65535> <udp|tcp> community <community>",
     "adds a receiver, of which there are 16 at most",
     [](Text kind, Text destination, Text port, Text protocol, Text community) {
         return AddTrapsink(destination, community, kind, port, protocol);
     }},
    {"snmp trap-receiver delete <trapsink|trap2sink|informsink> <server> <1..65535> <udp|tcp> community "
     "<community>",
     "removes a receiver, by what snmp show says of it",
     [](Text type, Text destination, Text port, Text protocol, Text community) {
         return DeleteTrapsink(destination, port, protocol, community, type);
     }},
    {"snmp user", "SNMPv3 users and their trap receivers"},
    {"snmp user add <word> <md5|sha>", "adds a user who may read, and asks for the password",
     kCall<&AddUserWithPassword>},
    {"snmp user delete <user>", "removes a user", kCall<&DeleteUser>},
    {"snmp user rename <user> <word>", "gives a user another name",
     [](Text name, Text new_name) { return IsUserFree(new_name) && RenameUser(name, new_name); }},
    {"snmp user password <user>", "asks for a new password", kCall<&ChangePassword>},
    {"snmp user authentication <user> <md5|sha>", "sets how the user is authenticated",
     kCall<&SetUserAuthType>},
    {"snmp user encryption", "privacy of the user's messages"},
    {"snmp user encryption <user> on", "asks for the privacy key, and encrypts", kCall<&Encrypt>},
    {"snmp user encryption <user> off", "doesn't encrypt any more, and forgets the key", kCall<&DontEncrypt>},
    {"snmp user reading <user> <on|off>", "says whether the user may read", kCall<&SetUserRead>},
    {"snmp user traps <user> <on|off>", "says whether traps are sent to the user's receivers",
     kCall<&SetUserTrapsess>},
    {"snmp user receiver", "trap receivers of a user"},
    {"snmp user receiver add <user> <trap|inform> <server> <1..65535> <udp|tcp>", "adds a receiver",
     [](Text user, Text type, Text destination, unsigned long port, Text protocol) {
         return AddUserTrapsess(user, destination, protocol, port, type);
     }},
    {"snmp user receiver delete <user> <trap|inform> <server> <1..65535> <udp|tcp>", "removes a receiver",
     [](Text user, Text type, Text destination, Text port, Text protocol) {
         return DeleteUserTrapsess(user, {destination, port, protocol, type});
     }},
    {"snmp cluster", "monitoring of the two nodes of a cluster"},
    {"snmp cluster monitoring <on|off>", "lets the nodes monitor each other", kCall<&SetClusterV2Mode>},
    {"snmp cluster system-community <word>", "sets the community that the nodes use themselves",
     kCall<&SetSystemCommunity>},
    {"snmp cluster node", "nodes of the cluster"},
    {"snmp cluster node add <address> context <word> community <word>", "adds a node",
     [](Text address, Text context, Text community) {
         return AddClusterNode({address, context, community});
     }},
    {"snmp cluster node context <address> <word>", "sets a node's context", kCall<&SetClusterNodeContext>},
    {"snmp cluster node community <address> <word>", "sets a node's community",
     kCall<&SetClusterNodeCommunity>},
    {"snmp cluster node clear", "removes the two nodes", kCall<&EraseClusterNodes>},
};

} // namespace

std::span<const Command> SnmpCommands() {
    return kCommands;
}

} // namespace shell
