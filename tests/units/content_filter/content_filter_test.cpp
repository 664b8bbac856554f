#include "front/helpers/xml.h"
#include "front/unit_dispatch.h"
#include "tests/support/appliance.h"
#include "units/content_filter/defaults.h"
#include "units/content_filter/report.h"
#include "units/content_filter/rules.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace settings::content_filter {
namespace {

using support::Output;
using support::ReadFile;
using support::WriteFile;

constexpr const char* kSettings = "/mnt/main/etc/settings/content-filter.xml";
constexpr const char* kConfiguration = "/etc/squid/content-filter.conf";
constexpr const char* kProxy = "/etc/init.d/http_proxy.sh";
constexpr const char* kEnd = "\nhttp_access deny all\nhttp_reply_access deny all\n";

using Call = std::function<bool()>;

bool Add(std::size_t position, const char* name) {
    return AddRule(position, name, "", "", "", "", "drop");
}
bool Generate() {
    return ApplyUnitUri("content-filter?whatever=1#x");
}

// The proxy is stopped.
class ContentFilterTest : public support::Appliance {
protected:
    ContentFilterTest() {
        InitXml();
        EXPECT_EQ(unlink(kSettings), 0); // the sample
        WriteFile(kProxy, "#!/bin/sh\n[ \"$*\" != squid_is_running ]\n", 0755);
    }

    static void Content(const std::string& text) {
        WriteFile(kSettings, "<unit name=\"content-filter\">" + text + "</unit>");
    }
    static void Names(std::initializer_list<const char*> names) {
        std::string rules;
        for (const char* name : names)
            rules += "<rule name=\"" + std::string(name) + "\"/>";
        Content(rules);
    }
    static void Expect(const Call& call, bool done, const Output& output) {
        bool result = !done;
        EXPECT_EQ(support::Capture([&] { result = call(); }), output);
        EXPECT_EQ(result, done);
    }
    static void ExpectRefusal(const Call& call, const Output& output) {
        const std::string before = ReadFile(kSettings);
        Expect(call, false, output);
        EXPECT_EQ(ReadFile(kSettings), before);
    }
};

TEST_F(ContentFilterTest, GoldenConfigurationIsTakenByTheProxy) {
    Content(R"(<mode>on</mode>
  <default-request-action value="pass"/><default-reply-action value="ask"/>
  <rule name="it's &quot;1&quot;"><action>drop</action><source>10.0.0.0/8 192.168.0.0/16</source>
    <destination>.a.example b.example</destination><http-command>POST PUT</http-command></rule>
  <rule name="soap"><source>@any</source><destination>@any</destination>
    <mime-type>application/soap+xml</mime-type><action>drop</action></rule>
  <rule><source>@any</source><destination>@any</destination><http-command>GET</http-command>
    <action>pass</action></rule>
  <rule name="both"><source>10.1.0.0/16</source><destination>.c.example</destination>
    <http-command>GET</http-command><mime-type>video/mp4 image/svg+xml</mime-type><action>drop</action></rule>
  <rule name="neither"><source>10.2.0.1</source><destination>@any</destination><action>drop</action></rule>
  <rule name="by hand"><source>10.3.0.0/16&#9;10.4.0.0/16</source>
    <destination>.d.example&#9;.e.example</destination><http-command>PUT&#9;DELETE</http-command>
    <mime-type/><mime-type>video/mp4</mime-type><action>ask&#10;"whom</action><action>drop</action></rule>)");
    Expect(Generate, true,
           {"", "content-filter: rule 5: without http-command and mime-type it never applies\n"});
    support::ExpectGolden(kConfiguration, "units/content_filter/content-filter.conf");
    WriteFile("/etc/squid/test.conf",
              std::string("http_port 3128\nvisible_hostname gateway\ninclude ") + kConfiguration + "\n");
    const auto squid = support::RunProgram({"squid", "-k", "parse", "-f", "/etc/squid/test.conf"});
    EXPECT_EQ(squid.status, 0);
    for (const char* fault : {"unrecognized", "ERROR", "FATAL", "WARNING", "Bungled"})
        EXPECT_THAT(squid.out + squid.err, ::testing::Not(::testing::HasSubstr(fault)));
    EXPECT_THAT(squid.err, ::testing::HasSubstr("Processing: http_reply_access deny all"));
}

TEST_F(ContentFilterTest, ModeAndDefaults) {
    const char* cases[][2] = {
        {"<rule><mime-type>a</mime-type></rule>", ""},
        {"<mode>On</mode><default-request-action value='pass'/>", ""},
        {"<mode>on</mode>", kEnd},
        {"<mode>on</mode><default-request-action/><default-request-action value='pass'/>",
         "\nhttp_access allow all\nhttp_reply_access deny all\n"},
        {"<mode>on</mode><default-request-action value='Pass'/><default-reply-action value='pass'/>",
         "\nhttp_access deny all\nhttp_reply_access allow all\n"},
    };
    for (const auto& [content, configuration] : cases) {
        Content(content);
        WriteFile(kConfiguration, "old");
        Expect(Generate, true, {});
        EXPECT_EQ(ReadFile(kConfiguration), configuration) << content;
    }
}

// A text that the proxy would read as a line of its own, or as more than a value, costs the rule.
TEST_F(ContentFilterTest, TextsCannotBecomeDirectives) {
    const std::string cases[][2] = {
        {"<rule name='a&#10;http_access allow all'>", "name"},
        {"<rule name='" + std::string(8192, 'x') + "http_access allow all'>", "name"},
        {"<rule><source>@any\nhttp_access allow all</source>", "source"},
        {"<rule><source>\"/etc/shadow\"</source>", "source"},
        {"<rule><destination>.a.example\\</destination>", "destination"},
        {"<rule><http-command>GET&#13;</http-command>", "http-command"},
        {"<rule><mime-type>a/b&#9;c/d</mime-type>", "mime-type"},
        {"<rule><mime-type>" + std::string(4001, '+') + "</mime-type>", "mime-type"},
    };
    for (const auto& [rule, fault] : cases) {
        Content("<mode>on</mode>" + rule + "<action>drop</action></rule>");
        Expect(Generate, false,
               {"", "content-filter: rule 1: the text of " + fault +
                        " cannot stand in the proxy configuration\n"});
        EXPECT_EQ(ReadFile(kConfiguration), kEnd);
    }
    ExpectRefusal([] { return AddRule(1, "", "a\nb", "", "", "", ""); },
                  {"", "content-filter: the text of source cannot stand in the proxy configuration\n"});
}

// What the proxy takes and never finds in a request or reply.
TEST_F(ContentFilterTest, RulesThatNeverApplyAreTold) {
    const std::string any = "<source>@any</source><destination>@any</destination>";
    const std::string get = "<http-command>GET</http-command>";
    const std::pair<std::string, std::string> cases[] = {
        {any, "without http-command and mime-type it never applies"},
        {"<source> </source><destination>@any</destination>" + get, "without source it never applies"},
        {"<source>@any</source>" + get, "without destination it never applies"},
        {any + "<mime-type>text/html */*</mime-type>", "\"*/*\" in mime-type never matches"},
        {any + "<mime-type>video/*</mime-type>", "\"video/*\" in mime-type never matches"},
        {any + "<mime-type>video/[a-z</mime-type>", "\"video/[a-z\" in mime-type never matches"},
        {any + "<mime-type>video/(mp4|mpeg) .*/.*</mime-type>", ""},
        {any + "<http-command>HEAD GET,POST</http-command>", "\"GET,POST\" in http-command never matches"},
        {any + "<http-command>M-SEARCH</http-command>", ""},
        {"<source>@any</source><destination>-n</destination>" + get, "\"-n\" in destination never matches"},
        {"<source>@any</source><destination>.a.example *.b.example</destination>" + get,
         "\"*.b.example\" in destination never matches"},
        {"<source>@any</source><destination>a.example:80</destination>" + get,
         "\"a.example:80\" in destination never matches"},
        {"<source>@any</source><destination>.a-b.example 10.0.0.1 2001:db8::1</destination>" + get, ""},
    };
    for (const auto& [fields, warning] : cases) {
        Content("<mode>on</mode><rule>" + fields + "<action>drop</action></rule>");
        Expect(Generate, true, {"", warning.empty() ? "" : "content-filter: rule 1: " + warning + "\n"});
    }
}

TEST_F(ContentFilterTest, FullDiskIsReported) {
    Content("<mode>on</mode><rule/>");
    support::FillDisk("/etc/squid");
    Expect(Generate, false,
           {"", "content-filter: rule 1: without source it never applies\n"
                "content-filter: rule 1: without destination it never applies\n"
                "content-filter: rule 1: without http-command and mime-type it never applies\n"
                "/etc/squid/content-filter.conf: failed to apply content-filter configuration: "
                "No space left on device\n"});
    support::FillDisk("/mnt/main/etc/settings");
    Expect([] { return SetDefaultReplyAction("pass"); }, false,
           {"", "content-filter: failed to write configuration\nFailed set default-reply-action\n"});
}

// Nothing is changed while the proxy runs, and it is asked once each time.
TEST_F(ContentFilterTest, Gate) {
    const struct {
        Call call;
        const char* subject;
    } cases[] = {
        {[] { return Add(0, "c"); }, "rules"},
        {[] { return EditRule(1, "c", "", "", "", "", ""); }, "rules"},
        {[] { return DeleteRule(1); }, "rules"},
        {[] { return DeleteRuleByName("a"); }, "rules"},
        {[] { return MoveRule(1, 2); }, "mode"},
        {[] { return MoveRuleByName("a", 2); }, "mode"},
        {[] { return SetDefaultRequestAction("pass"); }, "mode"},
        {[] { return SetDefaultReplyAction("pass"); }, "mode"},
        {[] { return SetContentFilterMode(true); }, "mode"},
    };
    Names({"a", "b"});
    support::Record(kProxy);
    for (const auto& row : cases)
        ExpectRefusal(row.call,
                      {std::string("Can't edit ") + row.subject + ". HTTP-proxy is running.\n", ""});
    support::ExpectCommands({std::size(cases), std::string(kProxy) + " squid_is_running"});
}

TEST_F(ContentFilterTest, ListOperations) {
    using List = std::vector<std::string>;
    const struct {
        Call call;
        List names;
        const char* error;
    } cases[] = {
        {[] { return Add(2, "x"); }, {"a", "x", "b", "c"}, ""},
        {[] { return Add(0, "x"); }, {"a", "b", "c", "x"}, ""},
        {[] { return Add(4, "it's"); }, {"a", "b", "c", "it's"}, ""},
        {[] { return Add(1, "b"); }, {"a", "b", "c"}, "b: duplicate rule name"},
        {[] { return EditRule(2, "x", "", "", "", "", ""); }, {"a", "x", "c"}, ""},
        {[] { return EditRule(2, "a", "", "", "", "", ""); }, {"a", "b", "c"}, "a: duplicate rule name"},
        {[] { return EditRule(4, "x", "", "", "", "", ""); },
         {"a", "b", "c"},
         "could not find rule with id 4"},
        {[] { return MoveRule(2, 0); }, {"a", "c", "b"}, ""},
        {[] { return MoveRule(1, 2); }, {"b", "a", "c"}, ""},
        {[] { return MoveRule(9, 1); }, {"c", "a", "b"}, ""},
        {[] { return MoveRule(3, 0); }, {"a", "b", "c"}, ""},
        {[] { return MoveRuleByName("c", 2); }, {"a", "c", "b"}, ""},
        {[] { return MoveRuleByName("a", 7); }, {"b", "c", "a"}, ""},
        {[] { return MoveRuleByName("x", 1); }, {"a", "b", "c"}, "x: failed to move to position 1"},
        {[] { return DeleteRule(2); }, {"a", "c"}, ""},
        {[] { return DeleteRule(0); }, {"a", "b", "c"}, "failed to delete rule at position 0"},
        {[] { return DeleteRuleByName("c"); }, {"a", "b"}, ""},
        {[] { return DeleteRuleByName("x' or '1"); }, {"a", "b", "c"}, "x' or '1: failed to delete rule"},
    };
    for (std::size_t i = 0; i < std::size(cases); i++) {
        SCOPED_TRACE(i);
        const std::string error = cases[i].error;
        Names({"a", "b", "c"});
        Expect(cases[i].call, error.empty(), {"", error.empty() ? "" : error + "\n"});
        EXPECT_EQ(ListRuleNames(), cases[i].names);
        EXPECT_EQ(GetRuleCount(), cases[i].names.size());
    }
    Names({"a", "b"}); // as nobody but a writer of ours would leave it
    const std::string before = ReadFile(kSettings);
    Expect([] { return MoveRule(2, 0) && MoveRuleByName("a", 1); }, true, {});
    EXPECT_EQ(ReadFile(kSettings), before);
    WriteFile(kSettings, "<unit>");
    const std::string damaged = "content-filter: failed to parse configuration\n";
    ExpectRefusal([] { return EditRule(1, "x", "", "", "", "", ""); },
                  {"", damaged + "could not parse xml file " + kSettings + "\n"});
    ExpectRefusal([] { return SetDefaultReplyAction("pass"); },
                  {"", damaged + "Content-filter config parse fail\n"});
}

TEST_F(ContentFilterTest, RuleWithoutNameGetsTheNumberBehindTheFirstRun) {
    const struct {
        std::initializer_list<const char*> names;
        const char* added;
    } cases[] = {
        {{"a", "rule_x", "rule_2x"}, "rule_1"},
        {{"rule_3"}, "rule_4"},
        {{"rule_10", "rule_2", "rule_3", "rule_5"}, "rule_4"},
        {{"rule_7", "rule_99999999999999999999"}, "rule_8"},
    };
    for (const auto& row : cases) {
        Names(row.names);
        Expect([] { return Add(1, ""); }, true, {});
        EXPECT_EQ(ListRuleNames().front(), row.added);
    }
}

TEST_F(ContentFilterTest, EditedFileAndItsReport) {
    Expect([] { return SetContentFilterMode(false) && SetContentFilterMode(true); }, true, {});
    Expect([] { return SetDefaultRequestAction("drop") && SetDefaultRequestAction("pass"); }, true,
           {"Set default-request-action to drop\nSet default-request-action to pass\n", ""});
    Expect([] { return SetDefaultReplyAction("drop"); }, true, {"Set default-reply-action to drop\n", ""});
    Expect([] { return AddRule(0, "no-uploads", "10.0.0.0/8", "@any", "POST", "", "drop"); }, true, {});
    Expect([] { return AddRule(1, "", "@any", "@any", "", "video/mp4", "drop"); }, true, {});
    Expect([] { return EditRule(2, "", "10.1.0.0/16", "", "PUT", "", ""); }, true, {});
    support::ExpectGolden(kSettings, "units/content_filter/content-filter.xml");
    EXPECT_TRUE(IsContentFilterOn());
    EXPECT_EQ(GetDefaultRequestAction() + " " + GetDefaultReplyAction(), "pass drop");

    WriteFile("/sbin/textpager.sh", "#!/bin/sh\ncp \"$1\" /run/shown\nls /tmp > /run/left\n", 0755);
    Expect(ShowRules, true, {});
    support::ExpectGolden("/run/shown", "units/content_filter/rules.txt");
    EXPECT_EQ(ReadFile("/run/left"), ""); // whatever ends the pager or us
}

} // namespace
} // namespace settings::content_filter
