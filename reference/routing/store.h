#pragma once

#include <optional>
#include <string>

namespace reference::routing {

// Where a daemon's state is between two calls: the running configuration below /run/quagga, the saved one in
// /etc/quagga. One call at a time has it, for as long as the object lives.
class Store {
public:
    explicit Store(const std::string& daemon);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    bool IsLocked() const { return lock_ >= 0; }
    // zebra and zdhcpd run unless /run/quagga/<daemon>.down is there, dgdd as long as it holds its pid file.
    bool IsRunning() const;
    // Whether the daemon has been asked before; until then its configuration is the saved one.
    bool HasRunning() const;

    // "" when nothing was kept; nothing when it can't be read.
    std::optional<std::string> Saved() const;
    std::optional<std::string> Running() const;
    std::optional<std::string> Tables() const;
    [[nodiscard]] bool SetSaved(const std::string& text) const;
    [[nodiscard]] bool SetRunning(const std::string& text, const std::string& tables) const;

private:
    std::string daemon_;
    int lock_;
};

constexpr const char* kDgddPidFile = "/run/quagga/dgdd.pid"; // locked by the one that runs

// Puts the whole text, safe on the disk, in the place of the file.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::string& text);
// "" for a file that is not there; nothing, with the reason on standard error, for one that can't be read.
std::optional<std::string> ReadWhole(const std::string& path);

} // namespace reference::routing
