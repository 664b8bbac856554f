#include "commands/services/web_ui.h"
#include "tests/support/command_test.h"

#include <stdexcept>
#include <unistd.h>

namespace {

constexpr const char* kScript = "/sbin/ssl_cert_manage.sh";

class WebUiTest : public CommandTest {
protected:
    WebUiTest() {
        support::Record(kScript);
        Write("http", "", "", "80");
        Watch("webui", [] { return support::RunShell("cat " + SettingsFile("webui")).out; });
    }
    static void Write(const std::string& protocol, const std::string& certificate, const std::string& key,
                      const std::string& port) {
        support::WriteFile(
            SettingsFile("webui"),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"webui\">\n  <ssl>\n"
            "    <protocol>" +
                protocol + "</protocol>\n    <certificate>" + certificate + "</certificate>\n    <key>" +
                key + "</key>\n  </ssl>\n  <server>\n    <port>" + port + "</port>\n  </server>\n</unit>\n");
    }
};

TEST_F(WebUiTest, Fields) {
    Type({"web protocol https", "web certificate file a.pem", "web key file a.key", "web port 8443",
          "web show", "web protocol http", "web certificate none", "web key none", "web show"});
    Write("HTTPS", "/etc/own/b.pem", "/old/mnt/main/etc/cert/b.key", "443");
    Type({"web show"});
    for (const char* port : {"abc", "99999999999999999999999"}) {
        Write("https", "", "", port);
        Type({std::string("web show   # port ") + port});
    }
    unsigned long port = 0;
    EXPECT_THROW((void)WebUiGetPort(port), std::out_of_range);
    Write("https", "", "", "abc");
    EXPECT_THROW((void)WebUiGetPort(port), std::invalid_argument);
    EXPECT_TRUE(WebUiSetKey(nullptr));
    const std::string file = SettingsFile("webui");
    ASSERT_EQ(support::RunShell("mount --bind " + file + " " + file + " && mount -o remount,bind,ro " + file)
                  .status,
              0);
    Type({"web port 81   # read-only"});
    ExpectTranscript("services/web_fields");
}

TEST_F(WebUiTest, QuestionsAndRefusals) {
    Write("https", "/mnt/main/etc/cert/the site's.pem", "", "443");
    for (const char* address : {"10.0.0.12", "10.0.0.2"}) {
        support::Queue(kScript, {.out = "10.0.0.1\ngate.example 10.0.0.12\n"});
        Play(std::string("certificate names ") + address, [&] { return is_ip_in_webui_https_cert(address); });
    }
    support::Queue(kScript, {.out = "10.0.0.1\n", .status = 1});
    Play("certificate names 10.0.0.1", [] { return is_ip_in_webui_https_cert("10.0.0.1"); });
    Play("certificate names \"\"", [] { return is_ip_in_webui_https_cert(""); });

    support::WriteFile(SettingsFile("webui"), "<unit");
    Type({"web show", "web port 1"});
    unlink(SettingsFile("webui").c_str());
    Type({"web protocol https", "web certificate file a", "web key file a", "web port 1", "web show"});
    Play("no settings: certificate names 10.0.0.1", [] { return is_ip_in_webui_https_cert("10.0.0.1"); });
    ExpectTranscript("services/web_ui");
}

} // namespace
