#include "reference/failover/node.h"

#include "reference/failover/processes.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <net/if.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace reference::failover {
namespace {

constexpr const char* kClusterFile = "/etc/failover.ini";
constexpr const char* kStateFile = "/var/spool/corvan/failoverstat";
constexpr const char* kAdverts = "/usr/sbin/keepalived";
constexpr const char* kAdvertsPid = "/run/failover/keepalived.pid";
constexpr const char* kAdvertsChildPid = "/run/failover/vrrp.pid";
constexpr const char* kConnections = "/usr/sbin/conntrackd";
// Only a connection that began here, or that the other node has told of, is let through.
constexpr const char* kGate =
    "table ip failover; delete table ip failover; table ip failover { chain forward { type "
    "filter hook forward priority filter; ct state invalid drop; }; }";

bool Complain(const std::string& what) {
    std::fprintf(stderr, "failoverd: %s\n", what.c_str());
    return false;
}

// The first address of the interface, "" when it has none.
std::string OwnAddress(const std::string& device) {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, device.c_str(), IFNAMSIZ - 1);
    const bool known = socket >= 0 && ioctl(socket, SIOCGIFADDR, &request) == 0;
    if (socket >= 0)
        close(socket);
    sockaddr_in address{};
    std::memcpy(&address, &request.ifr_addr, sizeof address);
    char text[INET_ADDRSTRLEN] = "";
    return known ? inet_ntop(AF_INET, &address.sin_addr, text, sizeof text) : "";
}

void TellConnections(std::initializer_list<const char*> requests) {
    for (const char* const request : requests)
        (void)Run({kConnections, request}); // what it could not do now, the next takeover does
}

} // namespace

bool WriteState(State state) {
    return ReplaceFile(kStateFile, "state of this node\n" + std::to_string(state) + "\n");
}

void DropAddresses() {
    for (const std::string& address : ReadCluster(kClusterFile).Addresses()) {
        std::istringstream words(address);
        std::string prefix, dev, device;
        words >> prefix >> dev >> device;
        (void)Run({"ip", "address", "delete", prefix, "dev", device}); // keepalived may have done it
    }
}

Node::Node(Role role) : role_(role), cluster_(ReadCluster(kClusterFile)) {}

Node::~Node() {
    End(adverts_);
    End(connections_);
    if (connections_ > 0)
        (void)Run({"nft", "delete", "table", "ip", "failover"});
    if (events_ >= 0)
        close(events_);
}

bool Node::Begin() {
    if (cluster_.send_device.empty())
        return Complain(std::string(kClusterFile) + " names no device");
    mkdir(kRunFolder, 0755);
    unlink(kEvents);
    if (mkfifo(kEvents, 0600) != 0 || (events_ = open(kEvents, O_RDWR | O_NONBLOCK | O_CLOEXEC)) < 0)
        return Complain(std::string(kEvents) + ": " + std::strerror(errno));
    if (access(kAdverts, X_OK) != 0)
        return Complain(std::string("there is no ") + kAdverts);
    if (!ReplaceFile(kAdvertsFile, AdvertsText(cluster_, role_)) || !WriteState(kPassive))
        return Complain("failed to write the settings");
    if (cluster_.sync_connections && !BeginSynchronization())
        return false;
    // It would not run beside another one.
    for (const char* const pid_file : {kAdvertsPid, kAdvertsChildPid})
        EndLeftOver(pid_file, kAdverts);
    adverts_ = Start({kAdverts, "--dont-fork", "--vrrp", "--dont-respawn", "--use-file", kAdvertsFile,
                      "--pid", kAdvertsPid, "--vrrp_pid", kAdvertsChildPid});
    return adverts_ > 0 || Complain("failed to start keepalived");
}

bool Node::BeginSynchronization() {
    if (access(kConnections, X_OK) != 0)
        return Complain(std::string("there is no ") + kConnections);
    const std::string address = OwnAddress(cluster_.send_device);
    if (address.empty())
        return Complain(cluster_.send_device + " has no address");
    unlink("/run/failover/conntrackd.lock");
    // After a takeover the windows of a connection are those of a moment ago.
    if (!ReplaceFile(kConnectionsFile, ConnectionsText(cluster_, address)) || !Run({"nft", kGate}) ||
        !Run({"sysctl", "-qw", "net.netfilter.nf_conntrack_tcp_loose=0",
              "net.netfilter.nf_conntrack_tcp_be_liberal=1"}))
        return Complain("connections can't be followed here");
    connections_ = Start({kConnections});
    return connections_ > 0 || Complain("failed to start conntrackd");
}

bool Node::TakeEvents() {
    char buffer[4096];
    for (ssize_t size = 0; (size = read(events_, buffer, sizeof buffer)) > 0;)
        pending_.append(buffer, static_cast<std::size_t>(size));
    for (std::size_t end = 0; (end = pending_.find('\n')) != pending_.npos; pending_.erase(0, end + 1)) {
        const std::string event = pending_.substr(0, end);
        if (!event.starts_with("INSTANCE "))
            continue;
        if (!Become(event.find(" MASTER ") != event.npos ? kActive : kPassive))
            return false;
    }
    return true;
}

bool Node::Become(State state) {
    if (state == state_)
        return true;
    state_ = state;
    const bool written = WriteState(state);
    if (connections_ > 0 && state == kActive)
        TellConnections({"-c", "-f", "-R", "-B"}); // what the other node told becomes real, and is told anew
    else if (connections_ > 0)
        TellConnections({"-t", "-n"}); // ours go, the other node is asked for its own
    return written;
}

std::chrono::milliseconds Node::TakeoverTime() const {
    const double seconds = std::strtod(cluster_.interval.c_str(), nullptr);
    return std::chrono::milliseconds(1000 + static_cast<int>(4000 * seconds));
}

bool Node::Lives() {
    for (pid_t* const daemon : {&adverts_, &connections_}) {
        if (*daemon > 0 && waitpid(*daemon, nullptr, WNOHANG) != 0) {
            *daemon = -1;
            return false;
        }
    }
    return true;
}

} // namespace reference::failover
