#pragma once

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace corvanshell {

// A record of settings kept in a key-value text file:
//
//     HOSTNAME<tab>zq100
//     NTP<tab>on
//     whatever nobody claims
//
// One entry a line: a key, blanks or tabs, a value and possibly further words. There are no comments, quotes
// or sections. A value that starts with "on" or "off" is a flag; a line that nobody claims is written back as
// it was. A file that is not there reads as empty.
//
// A record whose read was refused holds defaults that nobody set. Whoever needs what the file says asks
// CheckRead first, and such a record is never written.
class BasicConfStruct {
public:
    // With `check` the file is a guarded system file: it is read only when its guard agrees, and writing it
    // renews the guard. Reading is the derived constructor's step, behind its defaults.
    BasicConfStruct(std::string path, bool check);
    virtual ~BasicConfStruct() = default;

    // True when the record is written; a failure is in the log. Where the file was not read whole, what stood
    // there is kept beside it as "<path>.unread".
    [[nodiscard]] virtual bool Write() = 0;
    // False when the flag may not be set so.
    virtual bool SetFlag(const char* name, bool on);
    // False for an unknown flag, which is not added.
    virtual bool GetFlag(const char* name) const;

    // How much of the file the record holds.
    enum class Reading {
        kRefused, // nothing: a guard of the set, the settings lock or the system was against it
        kCut,     // what stands before a line that can't be read
        kDefault, // its default version: the file does not match its own guard
        kWhole,   // all of it
    };

    // False when the read was refused.
    bool Read();

    // Whether what the system goes by was read to its end: the file, or its default version.
    bool IsWhole() const { return reading == Reading::kWhole || reading == Reading::kDefault; }
    // The same, with an error that tells the administrator why it is not.
    [[nodiscard]] bool CheckRead() const;

    // From now on this process reads records as they are: a saved settings tree has no guards.
    static void DisableGuards() { guards_enabled = false; }

protected:
    using Words = std::vector<std::string>;

    // True when the class claims the key.
    virtual bool ParseValue(const std::string& key, const std::string& value) = 0;
    // Second chance, with the whole line and the words behind the value.
    virtual bool ParseLine(const std::string& line, const std::string& key, const std::string& value,
                           const Words& tokens) = 0;
    virtual void WriteFlags(std::ostream& output) const;
    virtual void WriteLines(std::ostream& output) const;
    // A file that is not there is empty. Throws std::system_error when one can't be read.
    virtual void ReadFile(const std::string& path);
    virtual std::string Join(const std::set<std::string>& texts, char separator) const;

    // Everything that stands in the file.
    virtual void WriteAll(std::ostream& output) const = 0;

    // Writes the file in one pass and renews its part of the shared guard, when the record is a guarded one.
    // The caller holds the settings lock exclusively. With `secret` nobody but its owner can read the file. A
    // failure is logged.
    [[nodiscard]] bool WriteFile(bool secret);

    std::string path;
    bool check;
    std::vector<std::string> lines;
    std::map<std::string, bool> flags;

private:
    static inline bool guards_enabled = true;

    bool IsSetWhole();
    void ReadLocked();
    void ParseEntry(const std::string& line);
    void WaitForLockFile() const;
    bool MatchesGuard() const;
    bool KeepUnread() const;

    Reading reading = Reading::kRefused;
    std::string obstacle; // why the read was refused or cut
};

} // namespace corvanshell
