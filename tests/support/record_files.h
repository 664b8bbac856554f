#pragma once

#include <algorithm>
#include <string>

// Where the fixture and the recorder program meet. /tmp is the appliance's own, and no settings stand there.
namespace support {

inline const std::string kRecorderFolder = "/tmp/recorder";
inline const std::string kRecorderProgram = kRecorderFolder + "/program";
inline const std::string kCallsFile = kRecorderFolder + "/calls";

// The answers of one recorder, in files whose names sort in the order of the calls. The first line of a file
// is "<exit status> <length of the standard output>"; standard output and standard error follow.
inline std::string QueueFolder(std::string path) {
    std::replace(path.begin(), path.end(), '/', '+');
    return kRecorderFolder + "/queue" + path;
}

} // namespace support
