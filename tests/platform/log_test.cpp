#include "platform/log.h"
#include "tests/support/appliance.h"

#include <syslog.h>

using namespace support;

namespace {

using LogTest = Appliance;
using Lines = std::vector<LogLine>;

[[gnu::format(printf, 2, 3)]] void Event(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    shell_log_event(level, 0, format, arguments);
    va_end(arguments);
}

TEST_F(LogTest, NobodyCanForgeALine) {
    slopen("test", LOG_PID | LOG_NDELAY, LOG_USER);
    shell_log_info("%s", "first\nsecond\r<3>\x1b[2J\ttab \x7f \xc3\xa4\n");
    slput(LOG_ERR, "%s", std::string(9000, 'x').c_str());
    slput(LOG_ERR, "%s", ("\xc2\x9b" + std::string(7991, 'x') + "\xc3\xa4").c_str());
    EXPECT_EQ(TakeLog(), (Lines{{6, "first"},
                                {6, "second#015<3>#033[2J\ttab #177 \xc3\xa4"},
                                {3, std::string(8000, 'x')},
                                {3, std::string(1000, 'x')},
                                {3, "#302#233" + std::string(7991, 'x')},
                                {3, "\xc3\xa4"}}));
}

TEST_F(LogTest, EventsComeInPieces) {
    Event(3, "%s:%d: ", "file.xml", 7);
    EXPECT_EQ(TakeLog(), Lines());
    Event(3, "parser error\nhere\nand");
    EXPECT_EQ(TakeLog(), (Lines{{3, "file.xml:7: parser error"}, {3, "here"}}));
    Event(4, "warned");
    EXPECT_EQ(TakeLog(), (Lines{{3, "and"}}));
    slclose();
    EXPECT_EQ(TakeLog(), (Lines{{4, "warned"}}));
}

TEST_F(LogTest, TheTargetDecidesWhatIsKept) {
    slopen("test", LOG_PID, LOG_USER);
    {
        ClUnilogKeeper keeper;
        keeper.Init("test", ClUnilogDefaultLevel(), LOG_WARNING);
        shell_log_info("not yet");
        for (const char* target :
             {"", "syslog", "syslog:user", "syslog:nobody.info", "syslog:user.loud", "file:user.info"}) {
            EXPECT_FALSE(ClUnilogFlush("", target, LOG_DEBUG)) << target;
        }
        ASSERT_TRUE(ClUnilogFlush("<own> ", "syslog:local3.debug", LOG_DEBUG));
        slput(LOG_DEBUG, "more than the keeper keeps");
        shell_log_info("kept");
        ASSERT_TRUE(ClUnilogFlush("", "syslog:daemon.err", ClUnilogDefaultLevel()));
        shell_log_warning("less than an error");
        shell_log_error("an error");
    }
    slput(LOG_DEBUG, "no keeper");
    EXPECT_EQ(TakeLog(), (Lines{{6, "<own> kept"}, {3, "an error"}, {7, "no keeper"}}));
}

} // namespace
