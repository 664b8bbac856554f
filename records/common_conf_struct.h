#pragma once

#include "records/basic_conf_struct.h"

#include <string>

namespace corvanshell {

// The settings that all appliances of a cluster share: service switches and session limits.
class CommonConfStruct : public BasicConfStruct {
public:
    // Reads the common settings file.
    CommonConfStruct();

    // The file must exist: outside processes lock it as well, and so does this, before the settings lock.
    [[nodiscard]] bool Write() override;

protected:
    bool ParseValue(const std::string& key, const std::string& value) override;
    bool ParseLine(const std::string& line, const std::string& key, const std::string& value,
                   const Words& tokens) override;

    void WriteAll(std::ostream& output) const override;

private:
    unsigned long session_timeout = 0;
    unsigned long max_remote_sessions = 0;
};

} // namespace corvanshell
