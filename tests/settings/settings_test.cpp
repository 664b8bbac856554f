#include "front/helpers/xml.h"
#include "settings/file.h"
#include "tests/support/appliance.h"

namespace settings {
namespace {

using support::Capture;
using support::ReadFile;
using support::WriteFile;

class SettingsTest : public support::Appliance {
protected:
    SettingsTest() { InitXml(); }
    ~SettingsTest() override { CleanupXml(); }

    static constexpr const char* kPath = "/mnt/main/etc/settings/sample.xml";
};

constexpr char kSample[] = R"(<?xml version="1.0" encoding="utf-8"?>
<unit name="sample">
  <relay id="1">
    <server interface="eth0">10.0<!-- old -->.0.5</server>
    <server interface="eth1">10.0.0.6</server>
  </relay>
</unit>
)";

TEST_F(SettingsTest, MissingFileIsAnEmptyUnitThatSaveCreates) {
    File file("sample", "");
    SetDirectory("/mnt/main/deep/folder/");
    ASSERT_TRUE(file.Load());
    EXPECT_EQ(file.Root().GetAttr("name"), "sample");
    EXPECT_FALSE(support::Exists("/mnt/main/deep"));
    ASSERT_TRUE(file.Root().AddChild("note", "%d%%", 5));
    ASSERT_TRUE(file.Save());
    EXPECT_EQ(
        ReadFile("/mnt/main/deep/folder/sample.xml"),
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"sample\">\n  <note>5%</note>\n</unit>\n");
}

TEST_F(SettingsTest, EditsRoundTrip) {
    WriteFile(kPath, kSample);
    File file("sample", "");
    ASSERT_TRUE(file.Load());
    EXPECT_EQ(file.GetText("/unit/relay[@id = '%d']/server[@interface = '%s']", 1, "eth1"), "10.0.0.6");
    Node first = file.SelectFirst("/unit/relay/server");
    EXPECT_EQ(first.GetText() + " " + first.NextSibling().GetText(), "10.0.0.5 10.0.0.6");
    EXPECT_TRUE(first.PrevSibling().IsNull());
    ASSERT_TRUE(first.AddPrevSibling(first.NextSibling()));
    ASSERT_TRUE(first.SetAttr("interface", "eth9"));
    ASSERT_TRUE(first.SetText("%s", "a &amp; b"));
    Node gone = file.Root().FirstChild().AddChild("gone");
    ASSERT_TRUE(gone.NewAttr("a", "1").NewAttr("a", "2"));
    EXPECT_EQ(file.Select("//gone/@a").Size(), 2U);
    EXPECT_TRUE(gone.Remove() && gone.IsNull() && gone.Remove());
    ASSERT_TRUE(file.Save());
    EXPECT_EQ(ReadFile(kPath), R"(<?xml version="1.0" encoding="utf-8"?>
<unit name="sample">
  <relay id="1">
    <server interface="eth1">10.0.0.6</server>
    <server interface="eth9">a &amp; b</server>
  </relay>
</unit>
)");
}

TEST_F(SettingsTest, QueriesThatFindNothingAreEmpty) {
    WriteFile(kPath, kSample);
    File file("sample", "");
    EXPECT_TRUE(file.Select("/unit").IsEmpty()); // nothing is loaded yet
    ASSERT_TRUE(file.Load());
    const std::string long_name(10000, 'x');
    for (const char* query :
         {"/unit/none", "count(//server)", "/unit[", "/unit/relay[@id = 'it's']", "", long_name.c_str()}) {
        const NodeSet found = file.Select("%s", query);
        EXPECT_TRUE(found.IsEmpty() && found.Size() == 0 && found.At(0).IsNull()) << query;
    }
    EXPECT_EQ(file.GetText("/unit/none"), "");
    Node null;
    EXPECT_TRUE(null.Parent().IsNull() && null.FirstChild().IsNull() && null.Remove());
    EXPECT_FALSE(null.SetText("x") || null.AddChild("x") || null.NewAttr("x", "y") ||
                 null.AddNextSibling(null));
    const Node attribute = file.SelectFirst("//server/@interface");
    EXPECT_EQ(attribute.GetText(), "eth0");
    EXPECT_TRUE(Node(attribute).AddChild("x").IsNull());
}

TEST_F(SettingsTest, RemoveAllEmptiesTheSetAndNotItsCopies) {
    WriteFile(kPath, kSample);
    File file("sample", "");
    ASSERT_TRUE(file.Load());
    NodeSet nodes = file.Select("//relay | //server"); // a node and what it holds
    const NodeSet copy = nodes;
    EXPECT_TRUE(nodes.RemoveAll() && nodes.IsEmpty());
    EXPECT_EQ(copy.Size(), 3U);
    EXPECT_TRUE(copy.At(1).IsNull());
    EXPECT_TRUE(file.Root().FirstChild().IsNull());
    // A set may outlive what it found, and the document.
    NodeSet root = file.Select("/unit");
    file.Close();
    EXPECT_TRUE(file.Root().IsNull());
}

TEST_F(SettingsTest, TextsThatXmlCannotHoldAreRefused) {
    File file("sample", "");
    ASSERT_TRUE(file.Load());
    Node root = file.Root();
    const std::string long_text = std::string(8190, 'a') + "\xc3\xa9";
    ASSERT_TRUE(root.SetText("%s", long_text.c_str())); // cut before the character that does not fit
    EXPECT_EQ(root.GetText(), std::string(8190, 'a'));
    for (const std::string bad : {"\xff", "a\x01z", "cut \xc3", "\xef\xbf\xbf", "\xc0\x80", "\xbf\x80",
                                  "a & b", "&foo;", "&#1;", "&#x;"}) {
        const auto output = Capture([&] { EXPECT_FALSE(root.SetText("%s", bad.c_str())) << bad; });
        EXPECT_EQ(output.err, bad.find('&') == std::string::npos
                                  ? "settings: the text holds characters that a settings file cannot hold\n"
                                  : "settings: a \"&\" in the text of a setting is written \"&amp;\"\n");
    }
    EXPECT_EQ(root.GetText(), std::string(8190, 'a'));
    ASSERT_TRUE(root.SetText("&#65;&#x42;&lt;<\xf0\x9f\x98\x80"));
    EXPECT_EQ(root.GetText(), "AB<<\xf0\x9f\x98\x80");
}

TEST_F(SettingsTest, LoadAndSaveReportWhatFails) {
    File file("sample", "");
    for (const char* text :
         {"not xml", "", "<unit>", "<a/><b/>", "<!DOCTYPE u [<!ENTITY a '&a;'>]><u>&a;</u>"}) {
        WriteFile(kPath, text);
        const auto output = Capture([&] { EXPECT_FALSE(file.Load()); });
        EXPECT_EQ(output.err.substr(output.err.rfind("sample:")), "sample: failed to parse configuration\n");
        EXPECT_TRUE(file.Root().IsNull());
    }
    WriteFile(kPath, kSample);
    ASSERT_TRUE(file.Load());
    SetDirectory("/mnt/main/etc/settings/sample.xml"); // a file
    EXPECT_EQ(
        Capture([&] { EXPECT_FALSE(file.Save()); }).err,
        "/mnt/main/etc/settings/sample.xml: failed to create configuration directory: Not a directory\n");
    EXPECT_EQ(ReadFile(kPath), kSample);
    SetDirectory("/mnt/main/etc/settings");
    support::FillDisk("/mnt/main/etc/settings");
    const auto output = Capture([&] { EXPECT_FALSE(file.Save()); });
    EXPECT_EQ(output.err, "sample: failed to write configuration\n");
    EXPECT_EQ(ReadFile(kPath), kSample);
    EXPECT_EQ(file.Root().GetAttr("name"), "sample");
}

TEST_F(SettingsTest, PrivateFileIsItsOwnersAlone) {
    WriteFile(kPath, kSample, 0644);
    File file("sample", "");
    file.KeepPrivate();
    ASSERT_TRUE(file.Load() && file.Save());
    EXPECT_EQ(support::ModeOf(kPath), 0600U);
    File other("other", "/mnt/main/other.xml");
    other.KeepPrivate();
    ASSERT_TRUE(other.Load() && other.Save());
    EXPECT_EQ(support::ModeOf("/mnt/main/other.xml"), 0600U);
    // No part of it comes to the log with a fault.
    (void)TakeLog();
    WriteFile(kPath, "<unit><user\n secret='12&key;34' secret1<</unit>");
    static_cast<void>(Capture([&] { EXPECT_FALSE(file.Load()); }));
    const auto log = TakeLog();
    ASSERT_FALSE(log.empty());
    for (const auto& line : log)
        EXPECT_TRUE(line.text.starts_with(kPath + std::string(":2: ")) &&
                    line.text.find("key") == std::string::npos &&
                    line.text.find("secret") == std::string::npos)
            << line.text;
}

} // namespace
} // namespace settings
