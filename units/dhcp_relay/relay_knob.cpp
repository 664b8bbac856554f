#include "units/dhcp_relay/relay_knob.h"

#include "front/helpers/stream.h"
#include "front/helpers/temporary.h"
#include "platform/messages.h"
#include "units/dhcp_relay/rules/lookup.h"

#include <cerrno>
#include <cstring>
#include <regex.h>
#include <unistd.h>

namespace settings::dhcp_relay {
namespace {

constexpr std::size_t kLineSize = 8192;

// An ID that is a pattern itself would match the lines of other relays.
std::string Escape(const std::string& id) {
    std::string escaped;
    for (const char letter : id) {
        if (std::strchr("[*.^$\\", letter) != nullptr)
            escaped += '\\';
        escaped += letter;
    }
    return escaped;
}

// The line of one relay: "DHCP_RELAY_1='...'".
class KnobPattern {
public:
    explicit KnobPattern(const std::string& id) {
        const std::string text = std::string("^\\s*") + kKnobPrefix + Escape(id) + "=.*$";
        compiled_ = regcomp(&pattern_, text.c_str(), REG_NOSUB) == 0;
    }
    ~KnobPattern() {
        if (compiled_)
            regfree(&pattern_);
    }
    KnobPattern(const KnobPattern&) = delete;
    KnobPattern& operator=(const KnobPattern&) = delete;

    explicit operator bool() const { return compiled_; }
    bool Matches(const char* line) const { return regexec(&pattern_, line, 0, nullptr, 0) == 0; }

private:
    regex_t pattern_{};
    bool compiled_ = false;
};

Stream OpenTemporary() {
    std::string path = "/tmp/dhcp-relay-XXXXXX";
    const int descriptor = MakeTemporary(path);
    if (descriptor < 0)
        return nullptr;
    Stream stream(fdopen(descriptor, "w+"));
    if (stream == nullptr)
        close(descriptor);
    return stream;
}

enum class Fault { kNone, kRead, kWrite };

// Copies the lines that the pattern does not match, all of them without one. A line longer than the buffer
// comes in pieces, which share the fate of the first; the last line gets the newline that it may lack, so
// that the next one stands apart.
Fault CopyLines(std::FILE* from, std::FILE* to, const KnobPattern* left_out) {
    char line[kLineSize];
    bool starts = true;
    bool kept = true;
    while (std::fgets(line, sizeof line, from) != nullptr) {
        if (starts)
            kept = left_out == nullptr || !left_out->Matches(line);
        if (kept && std::fputs(line, to) == EOF)
            return Fault::kWrite;
        starts = std::strchr(line, '\n') != nullptr;
    }
    if (std::ferror(from) != 0)
        return Fault::kRead;
    if (!starts && kept && std::fputc('\n', to) == EOF)
        return Fault::kWrite;
    return std::fflush(to) == 0 ? Fault::kNone : Fault::kWrite;
}

bool CopyOut(std::FILE* daemon, std::FILE* temporary, const KnobPattern& pattern, const std::string& id) {
    switch (CopyLines(daemon, temporary, &pattern)) {
    case Fault::kRead:
        return Refuse("DHCP relay %s: %s: failed to read daemon settings: %s", id, kDaemonSettings,
                      std::strerror(errno));
    case Fault::kWrite:
        return Refuse("DHCP relay %s: failed to write temporary daemon settings: %s", id,
                      std::strerror(errno));
    case Fault::kNone:
        break;
    }
    return true;
}

bool CopyBack(std::FILE* temporary, std::FILE* daemon, const std::string& id) {
    std::rewind(temporary);
    std::rewind(daemon);
    const Fault fault =
        ftruncate(fileno(daemon), 0) == 0 ? CopyLines(temporary, daemon, nullptr) : Fault::kWrite;
    switch (fault) {
    case Fault::kRead:
        return Refuse("DHCP relay %s: failed to read temporary daemon settings: %s", id,
                      std::strerror(errno));
    case Fault::kWrite:
        return Refuse("DHCP relay %s: %s: failed to write daemon settings: %s", id, kDaemonSettings,
                      std::strerror(errno));
    case Fault::kNone:
        break;
    }
    return true;
}

} // namespace

bool RemoveRelayKnob(const std::string& id) {
    const Stream daemon(std::fopen(kDaemonSettings, "r+e"));
    if (daemon == nullptr)
        return errno == ENOENT || Refuse("DHCP relay: %s: failed to open settings file: %s", kDaemonSettings,
                                         std::strerror(errno));
    const Stream temporary = OpenTemporary();
    if (temporary == nullptr)
        return Refuse("DHCP relay %s: failed to create temporary daemon settings file: %s", id,
                      std::strerror(errno));
    const KnobPattern pattern(id);
    if (!pattern)
        return Refuse("DHCP relay %s: failed to create relay knob pattern", id);
    return CopyOut(daemon.get(), temporary.get(), pattern, id) && CopyBack(temporary.get(), daemon.get(), id);
}

} // namespace settings::dhcp_relay
