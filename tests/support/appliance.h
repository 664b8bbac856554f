#pragma once

#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/processes.h"
#include "tests/support/recorders.h"
#include "tests/support/snapshot.h"
#include "tests/support/system_log.h"

#include <gtest/gtest.h>

namespace support {

// The fixture of every test that touches the appliance's files, programs or interfaces. The test case runs in
// a reference appliance of its own (reference/enter), so it uses the real paths, and cleans nothing up.
class Appliance : public ::testing::Test {
protected:
    Appliance();

    // What was logged since the last call.
    [[nodiscard]] std::vector<LogLine> TakeLog() { return log_.Take(); }

private:
    struct Inside {
        Inside();
    };
    Inside inside_; // first: nothing may be written outside
    SystemLog log_;
};

// Runs the real program.
[[nodiscard]] Result ConfTool(const Arguments& arguments, const std::string& input = "");

} // namespace support
