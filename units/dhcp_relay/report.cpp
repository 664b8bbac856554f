#include "units/dhcp_relay/report.h"

#include "front/unit_query.h"
#include "platform/console.h"
#include "platform/locks.h"
#include "platform/pager.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/lookup.h"
#include "units/dhcp_relay/stream.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace settings::dhcp_relay {
namespace {

constexpr const char* kNoValue = "NA";

// A file in /tmp, removed with its owner.
class TemporaryFile {
public:
    TemporaryFile() = default;
    ~TemporaryFile() {
        if (created_)
            unlink(path_);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool Open() {
        const int descriptor = mkostemp(path_, O_CLOEXEC);
        if (descriptor < 0) {
            shell_print_error("DHCP relay: failed to create temporary file: %s", std::strerror(errno));
            return false;
        }
        created_ = true;
        stream_.reset(fdopen(descriptor, "w"));
        if (stream_ != nullptr)
            return true;
        shell_print_error("DHCP relay: failed to access temporary file: %s", std::strerror(errno));
        close(descriptor);
        return false;
    }

    bool Sync() {
        if (std::fflush(stream_.get()) == 0 && std::ferror(stream_.get()) == 0 &&
            fsync(fileno(stream_.get())) == 0)
            return true;
        shell_print_error("DHCP relay: failed to write temporary file: %s", std::strerror(errno));
        return false;
    }

    std::FILE* Out() const { return stream_.get(); }
    const char* Path() const { return path_; }

private:
    char path_[32] = "/tmp/dhcp-relay-XXXXXX";
    bool created_ = false;
    Stream stream_;
};

struct ServerLabels {
    const char* server_id;
    const char* interface;
    const char* server;
};

constexpr ServerLabels kServerLabels[] = {
    {kExternalServer, "External DHCP server interface", "External DHCP server"},
    {kBackupServer, "Backup DHCP server interface", "Backup DHCP server"},
};

void PrintValue(std::FILE* out, const char* label, const std::string& value) {
    std::fprintf(out, "%s %s\n", label, value.empty() ? kNoValue : value.c_str());
}

void PrintRelay(const File& file, std::FILE* out, Node relay) {
    const std::string id = relay.GetAttr("id");
    std::fprintf(out, "\nDHCP relay %s is %s\n", id.c_str(), IsDhcpRelayRunning(id) ? "started" : "stopped");
    for (const ServerLabels& labels : kServerLabels) {
        const Node server =
            file.SelectFrom(relay, "server[@id = '%s' and @interface and text()]", labels.server_id).At(0);
        PrintValue(out, labels.interface, server.GetAttr("interface"));
        PrintValue(out, labels.server, server.GetText());
    }
    const NodeSet interfaces = file.SelectFrom(relay, "interface[@type = 'listen' and text()]");
    std::fprintf(out, "Internal listen interfaces");
    for (std::size_t i = 0; i < interfaces.Size(); ++i)
        std::fprintf(out, " %s", interfaces.At(i).GetText().c_str());
    if (interfaces.IsEmpty())
        std::fprintf(out, " %s", kNoValue);
    std::fprintf(out, "\n");
}

bool WriteReport(TemporaryFile& report, const std::string& id) {
    File file(kDhcpRelayUnit, "");
    if (!file.Load() || !report.Open())
        return false;
    const bool autostart = corvanshell::CommonConfStruct().GetFlag("DHCP_RELAY");
    std::fprintf(report.Out(), "DHCP relays autostart is %s\n", autostart ? "on" : "off");
    const NodeSet relays = file.Select("/unit/dhcp-relay[@id]");
    for (std::size_t i = 0; i < relays.Size(); ++i) {
        if (id.empty() || relays.At(i).GetAttr("id") == id)
            PrintRelay(file, report.Out(), relays.At(i));
    }
    return report.Sync();
}

bool LockSettings(lock_tool::FileLock& lock) {
    if (lock.AcquireShared(settings_lock_timeout, true))
        return true;
    shell_print_error("settings file is locked by another process, please try later");
    return false;
}

// The pager is waited for behind the lock, so that a reader at its prompt holds up nobody.
bool Show(lock_tool::FileLock& lock, const std::string& path) {
    ShellPager pager;
    if (pager.open() == nullptr)
        return false;
    const bool shown = pager.print_file(path);
    lock.Release();
    pager.wait();
    return shown;
}

} // namespace

bool PrintDhcpRelays(const std::string& id) {
    lock_tool::FileLock lock(kSettingsLock);
    TemporaryFile report;
    return LockSettings(lock) && WriteReport(report, id) && Show(lock, report.Path());
}

bool DumpRelaySettings() {
    lock_tool::FileLock lock(kSettingsLock);
    return LockSettings(lock) && Show(lock, GetFilePath(kDhcpRelayUnit));
}

} // namespace settings::dhcp_relay
