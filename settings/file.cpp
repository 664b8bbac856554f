#include "settings/file.h"

#include "platform/messages.h"
#include "platform/settings_file.h"

#include <cstring>
#include <filesystem>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <optional>
#include <unistd.h>

namespace settings {
namespace {

std::string& Directory() {
    static std::string directory = "/mnt/main/etc/settings";
    return directory;
}

const xmlChar* ToXml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

// What the parser takes from the text into its message stays out of the log.
std::string WithoutTexts(const xmlError& error) {
    std::string message = error.message != nullptr ? error.message : "";
    for (const char* text : {error.str1, error.str2, error.str3}) {
        const std::size_t place = text != nullptr && *text != '\0' ? message.find(text) : std::string::npos;
        if (place != std::string::npos)
            message.replace(place, std::strlen(text), "...");
    }
    return message;
}

// The parser's faults of a private file are told without its text as long as this lives.
class PrivateFaults {
public:
    PrivateFaults() { xmlSetStructuredErrorFunc(nullptr, TakeFault); }
    ~PrivateFaults() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
    PrivateFaults(const PrivateFaults&) = delete;
    PrivateFaults& operator=(const PrivateFaults&) = delete;

private:
    static void TakeFault(void* /*context*/, xmlErrorPtr fault) {
        LogError("%s:%d: %s", fault->file != nullptr ? fault->file : "", fault->line, WithoutTexts(*fault));
    }
};

} // namespace

void SetDirectory(const std::string& path) {
    Directory() = path;
}

const std::string& GetDirectory() {
    return Directory();
}

std::string GetFilePath(const std::string& name) {
    return GetDirectory() + "/" + name + ".xml";
}

bool IsLiteral(const std::string& text) {
    return text.find('\'') == std::string::npos;
}

void File::FreeDocument::operator()(xmlDoc* document) const {
    xmlFreeDoc(document);
}

void File::FreeContext::operator()(xmlXPathContext* context) const {
    xmlXPathFreeContext(context);
}

File::File(const char* name, const char* path) : name_(name), path_(path) {}

File::~File() = default;

void File::Close() {
    context_.reset();
    document_.reset();
}

std::string File::TargetPath() const {
    return path_.empty() ? GetFilePath(name_) : path_;
}

bool File::ReadDocument(const std::string& path) {
    std::optional<PrivateFaults> faults;
    if (private_)
        faults.emplace();
    // Short texts stand in their nodes, which saves an allocation each.
    document_.reset(xmlReadFile(path.c_str(), nullptr, XML_PARSE_COMPACT));
    return document_ != nullptr || Refuse("%s: failed to parse configuration", name_);
}

bool File::MakeEmptyDocument() {
    document_.reset(xmlNewDoc(ToXml("1.0")));
    xmlNode* root = document_ != nullptr ? xmlNewNode(nullptr, ToXml("unit")) : nullptr;
    if (root != nullptr) {
        xmlDocSetRootElement(document_.get(), root);
        if (Node(root).NewAttr("name", name_))
            return true;
    }
    document_.reset();
    return Refuse("%s: failed to create empty configuration", name_);
}

bool File::Load() {
    Close();
    const std::string path = TargetPath();
    const bool loaded = access(path.c_str(), R_OK) == 0 ? ReadDocument(path) : MakeEmptyDocument();
    if (!loaded)
        return false;
    context_.reset(xmlXPathNewContext(document_.get()));
    if (context_ == nullptr) {
        Close();
        return Refuse("%s: failed to initialize configuration parser", name_);
    }
    return true;
}

bool File::MakeDirectory() const {
    const std::string& directory = GetDirectory();
    std::error_code error;
    std::error_code ignored;
    if (std::filesystem::is_directory(directory, ignored) ||
        std::filesystem::create_directories(directory, error))
        return true;
    // Another process may have made it in the meantime.
    if (!error && std::filesystem::is_directory(directory, ignored))
        return true;
    return Refuse("%s: failed to create configuration directory: %s", directory, error.message());
}

bool File::Save() {
    return MakeDirectory() &&
           (WriteDocument(TargetPath()) || Refuse("%s: failed to write configuration", name_));
}

bool File::WriteDocument(const std::string& path) const {
    xmlChar* text = nullptr;
    int size = 0;
    if (document_ != nullptr)
        xmlDocDumpFormatMemoryEnc(document_.get(), &text, &size, "utf-8", 1);
    const std::unique_ptr<xmlChar, void (*)(void*)> owner(text, [](void* memory) { xmlFree(memory); });
    return text != nullptr &&
           WriteSettingsFile(path, {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)},
                             private_);
}

Node File::Root() const {
    return Node(document_ != nullptr ? xmlDocGetRootElement(document_.get()) : nullptr);
}

NodeSet File::Evaluate(const std::string& expression, Node start) const {
    if (context_ == nullptr)
        return {};
    context_->node = start.node_;
    xmlXPathObject* result = xmlXPathEvalExpression(ToXml(expression.c_str()), context_.get());
    context_->node = nullptr;
    if (result == nullptr)
        return {};
    if (result->nodesetval == nullptr || result->nodesetval->nodeNr == 0 ||
        result->nodesetval->nodeTab == nullptr) {
        xmlXPathFreeObject(result);
        return {};
    }
    return NodeSet(result);
}

} // namespace settings
