#pragma once

namespace failover {

// As long as it lives, SIGHUP, SIGTERM and SIGINT end the editor and not this process, which can put back
// what the editor has changed. The signal takes its course when the object dies. An interrupt key is the
// editor's own, and a signal that is ignored stays so.
class EditSignals {
public:
    EditSignals();
    ~EditSignals();
    EditSignals(const EditSignals&) = delete;
    EditSignals& operator=(const EditSignals&) = delete;

    // Whether one has come.
    static bool HaveCome();
};

} // namespace failover
