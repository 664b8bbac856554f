#pragma once

#include <memory>
#include <string>
#include <vector>

namespace nexthop {

using Lines = std::vector<std::string>;

// A next hop that is to be added.
struct NewNextHop {
    std::string name;
    std::string place;        // its address, or its interface: "modem" is that of a USB modem
    std::string test_address; // "" when none was given
    std::string check;        // "no-check" or the daemon's word
    std::string type;         // of the check, "" without one
};

// What the daemon knows of one test address.
struct TestState {
    std::string test_address = "NA";
    std::string state;
    std::string success_count = "0"; // since the state changed
    std::string failed_count = "0";
    std::string last_change = "never";
};

// What the daemon watches: a gateway.
class NextHop {
public:
    explicit NextHop(std::string name) : name_(std::move(name)) {}
    virtual ~NextHop() = default;
    NextHop(const NextHop&) = delete;
    NextHop& operator=(const NextHop&) = delete;

    // The rows of a listing, with their newlines.
    virtual std::string Format() const { return ""; }
    // Takes what the daemon shows of the next hop, line by line; lines of another form are skipped.
    virtual void Parse(const Lines&) {}
    virtual std::string GetInterface() const { return ""; }
    virtual bool IsModem() const { return false; }

    const std::string& Name() const { return name_; }
    const std::string& Gateway() const { return gateway_; }
    // Whether it is checked as the other is to be.
    bool HasCheckOf(const NewNextHop& other) const;
    bool HasTestAddress(const std::string& address) const;

protected:
    void ParseCommon(const std::string& line);
    std::string FormatRows(const char* mode, const std::string& interface_text) const;

private:
    TestState& Test();
    bool IsChecked() const;

    std::string name_;
    std::string gateway_; // "" when it is not set
    std::string check_type_;
    std::vector<TestState> tests_;
};

// A gateway given by its address.
class StaticNextHop : public NextHop {
public:
    using NextHop::NextHop;
    std::string Format() const override;
    void Parse(const Lines& lines) override;
};

// The gateway behind an interface.
class DynamicNextHop : public NextHop {
public:
    using NextHop::NextHop;
    std::string Format() const override;
    void Parse(const Lines& lines) override;
    std::string GetInterface() const override { return interface_; }
    bool IsModem() const override { return is_modem_; }

private:
    std::string interface_;
    std::string global_state_;
    bool is_modem_ = false;
};

// The next hops in the daemon's answer to "show next-hop", and in its configuration file.
std::vector<std::unique_ptr<NextHop>> ParseShown(const Lines& lines);
std::vector<std::unique_ptr<NextHop>> ParseConfigured(const Lines& lines);

} // namespace nexthop
