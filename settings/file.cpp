#include "settings/file.h"

#include "platform/console.h"

#include <fcntl.h>
#include <filesystem>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <sys/stat.h>
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

// Makes the file, or what stands there, readable by its owner alone before a text goes into it.
bool MakePrivate(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool done = fchmod(descriptor, 0600) == 0;
    close(descriptor);
    return done;
}

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
    document_.reset(xmlParseFile(path.c_str()));
    if (document_ == nullptr)
        shell_print_error("%s: failed to parse configuration", name_.c_str());
    return document_ != nullptr;
}

bool File::MakeEmptyDocument() {
    document_.reset(xmlNewDoc(ToXml("1.0")));
    xmlNode* root = document_ != nullptr ? xmlNewNode(nullptr, ToXml("unit")) : nullptr;
    if (root != nullptr) {
        xmlDocSetRootElement(document_.get(), root);
        if (Node(root).NewAttr("name", "%s", name_.c_str()))
            return true;
    }
    document_.reset();
    shell_print_error("%s: failed to create empty configuration", name_.c_str());
    return false;
}

bool File::Load() {
    Close();
    const std::string path = TargetPath();
    const bool loaded = access(path.c_str(), R_OK) == 0 ? ReadDocument(path) : MakeEmptyDocument();
    if (!loaded)
        return false;
    context_.reset(xmlXPathNewContext(document_.get()));
    if (context_ == nullptr) {
        shell_print_error("%s: failed to initialize configuration parser", name_.c_str());
        Close();
        return false;
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
    shell_print_error("%s: failed to create configuration directory: %s", directory.c_str(),
                      error.message().c_str());
    return false;
}

bool File::Save() {
    if (!MakeDirectory())
        return false;
    const std::string path = TargetPath();
    if (document_ == nullptr || (private_ && !MakePrivate(path)) ||
        xmlSaveFormatFileEnc(path.c_str(), document_.get(), "utf-8", 1) == -1) {
        shell_print_error("%s: failed to write configuration", name_.c_str());
        return false;
    }
    return true;
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
