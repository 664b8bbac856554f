#include "commands/services/web_ui.h"
#include "tests/support/command_test.h"

#include <stdexcept>

namespace {

constexpr const char* kScript = "/sbin/ssl_cert_manage.sh";

class WebUiTest : public CommandTest {
protected:
    WebUiTest() {
        support::Record(kScript);
        Write("http", "", "", "80");
    }
    static std::string Text(const std::string& protocol, const std::string& certificate,
                            const std::string& key, const std::string& port) {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"webui\">\n  <ssl>\n    <protocol>" +
               protocol + "</protocol>\n    <certificate>" + certificate + "</certificate>\n    <key>" + key +
               "</key>\n  </ssl>\n  <server>\n    <port>" + port + "</port>\n  </server>\n</unit>\n";
    }
    static void Write(const std::string& protocol, const std::string& certificate, const std::string& key,
                      const std::string& port) {
        support::WriteFile(SettingsFile("webui"), Text(protocol, certificate, key, port));
    }
};

TEST_F(WebUiTest, FieldsAreSetAndRead) {
    EXPECT_TRUE(WebUiSetHttps(true) && WebUiSetCertificate("a.pem") && WebUiSetKey("a.key") &&
                WebUiSetPort(8443));
    EXPECT_EQ(support::ReadFile(SettingsFile("webui")),
              Text("https", "/mnt/main/etc/cert/a.pem", "/mnt/main/etc/cert/a.key", "8443"));
    bool https = false;
    std::string certificate, key;
    unsigned long port = 0;
    EXPECT_TRUE(WebUiGetHttps(https) && WebUiGetCertificate(certificate) && WebUiGetKey(key) &&
                WebUiGetPort(port));
    EXPECT_TRUE(https);
    EXPECT_EQ(certificate + " " + key + " " + std::to_string(port), "a.pem a.key 8443");

    EXPECT_TRUE(WebUiSetHttps(false) && WebUiSetCertificate("") && WebUiSetKey(nullptr));
    EXPECT_TRUE(WebUiGetHttps(https) && WebUiGetCertificate(certificate) && WebUiGetKey(key));
    EXPECT_EQ(https ? "https" : certificate + key, "");
    Write("HTTPS", "/etc/own/b.pem", "", "abc");
    EXPECT_TRUE(WebUiGetHttps(https) && WebUiGetCertificate(certificate));
    EXPECT_FALSE(https);
    EXPECT_EQ(certificate, "/etc/own/b.pem");
    EXPECT_THROW((void)WebUiGetPort(port), std::invalid_argument);
    Write("", "", "", "99999999999999999999999");
    EXPECT_THROW((void)WebUiGetPort(port), std::out_of_range);
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

    unlink(SettingsFile("webui").c_str());
    Play("no settings: protocol", [] { return WebUiSetHttps(true); });
    Play("no settings: certificate", [] { return WebUiSetCertificate("a"); });
    Play("no settings: key", [] { return WebUiSetKey("a"); });
    Play("no settings: port", [] { return WebUiSetPort(1); });
    Play("no settings: certificate names 10.0.0.1", [] { return is_ip_in_webui_https_cert("10.0.0.1"); });
    ExpectTranscript("services/web_ui");
}

} // namespace
