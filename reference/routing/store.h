#pragma once

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
    // zebra and zdhcpd run unless /run/quagga/<daemon>.down is there, dgdd once /sbin/dgd.sh has started it.
    bool IsRunning() const;
    // Whether the daemon has been asked before; until then its configuration is the saved one.
    bool HasRunning() const;

    std::string Saved() const;
    std::string Running() const;
    std::string Tables() const;
    [[nodiscard]] bool SetSaved(const std::string& text) const;
    [[nodiscard]] bool SetRunning(const std::string& text, const std::string& tables) const;

private:
    std::string daemon_;
    int lock_;
};

// Puts the whole text in the place of the file.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::string& text);
std::string ReadWhole(const std::string& path);

} // namespace reference::routing
