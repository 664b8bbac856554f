#include "commands/services/web_ui.h"
#include "tests/commands/interfaces/command_fixture.h"

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
    Expect(
        [] {
            return WebUiSetHttps(true) && WebUiSetCertificate("a.pem") && WebUiSetKey("a.key") &&
                   WebUiSetPort(8443);
        },
        {});
    EXPECT_EQ(support::ReadFile(SettingsFile("webui")),
              Text("https", "/mnt/main/etc/cert/a.pem", "/mnt/main/etc/cert/a.key", "8443"));
    bool https = false;
    std::string certificate, key;
    unsigned long port = 0;
    Expect(
        [&] {
            return WebUiGetHttps(https) && WebUiGetCertificate(certificate) && WebUiGetKey(key) &&
                   WebUiGetPort(port);
        },
        {});
    EXPECT_TRUE(https);
    EXPECT_EQ(certificate + " " + key + " " + std::to_string(port), "a.pem a.key 8443");

    Expect([] { return WebUiSetHttps(false) && WebUiSetCertificate("") && WebUiSetKey(""); }, {});
    Write("HTTPS", "/etc/own/b.pem", "", "abc");
    EXPECT_TRUE(WebUiGetHttps(https) && WebUiGetCertificate(certificate) && WebUiGetKey(key));
    EXPECT_FALSE(https);
    EXPECT_EQ(certificate + key, "/etc/own/b.pem");
    EXPECT_THROW((void)WebUiGetPort(port), std::invalid_argument);
    Write("", "", "", "99999999999999999999999");
    EXPECT_THROW((void)WebUiGetPort(port), std::out_of_range);
}

TEST_F(WebUiTest, MissingFieldsAreRefused) {
    unlink(SettingsFile("webui").c_str());
    ExpectRefusal([] { return WebUiSetHttps(true); }, {.output = {"", "Failed to change protocol.\n"}});
    ExpectRefusal([] { return WebUiSetCertificate("a"); },
                  {.output = {"", "Failed to edit field certificate.\n"}});
    ExpectRefusal([] { return WebUiSetKey("a"); }, {.output = {"", "Failed to edit field key\n"}});
    ExpectRefusal([] { return WebUiSetPort(1); }, {.output = {"", "Failed to edit field server/port\n"}});
    ExpectRefusal([] { return is_ip_in_webui_https_cert("10.0.0.1"); }, {});
}

TEST_F(WebUiTest, AddressesOfTheCertificate) {
    Write("https", "/mnt/main/etc/cert/the site's.pem", "", "443");
    const std::vector<std::string> command = {kScript +
                                              std::string(" get_altnames_from_cert $'the site\\'s.pem'")};
    const support::Answer names = {.out = "10.0.0.1\ngate.example 10.0.0.12\n"};
    support::Queue(kScript, names);
    Expect([] { return is_ip_in_webui_https_cert("10.0.0.12"); }, {.commands = command});
    support::Queue(kScript, names);
    ExpectRefusal([] { return is_ip_in_webui_https_cert("10.0.0.2"); }, {.commands = command});
    support::Queue(kScript, {.out = "10.0.0.1\n", .status = 1});
    ExpectRefusal([] { return is_ip_in_webui_https_cert("10.0.0.1"); }, {.commands = command});
    ExpectRefusal([] { return is_ip_in_webui_https_cert(""); }, {.commands = command});
}

} // namespace
