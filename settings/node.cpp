#include "settings/node.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

namespace settings {
namespace {

const xmlChar* ToXml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

// Takes over a string that libxml2 allocated.
std::string TakeString(xmlChar* text) {
    if (text == nullptr)
        return {};
    std::string result(reinterpret_cast<const char*>(text));
    xmlFree(text);
    return result;
}

// The text of a list of children. One piece of text, the common case, needs no copy of libxml2's.
std::string ListText(xmlDoc* document, xmlNode* children) {
    if (children == nullptr)
        return {};
    if (children->next == nullptr && children->type == XML_TEXT_NODE && children->content != nullptr)
        return reinterpret_cast<const char*>(children->content);
    return TakeString(xmlNodeListGetString(document, children, 1));
}

void FreeResult(xmlXPathObject* result) {
    // The nodes may be gone by now; the table must not be walked.
    result->nodesetval->nodeNr = 0;
    xmlXPathFreeObject(result);
}

} // namespace

bool Node::IsAttribute() const {
    return node_ != nullptr && node_->type == XML_ATTRIBUTE_NODE;
}

Node Node::Parent() const {
    return Node(node_ != nullptr ? node_->parent : nullptr);
}

Node Node::FirstChild() const {
    return Node(node_ != nullptr ? xmlFirstElementChild(node_) : nullptr);
}

Node Node::PrevSibling() const {
    return Node(node_ != nullptr ? xmlPreviousElementSibling(node_) : nullptr);
}

Node Node::NextSibling() const {
    return Node(node_ != nullptr ? xmlNextElementSibling(node_) : nullptr);
}

std::string Node::Name() const {
    return node_ != nullptr && node_->name != nullptr ? reinterpret_cast<const char*>(node_->name) : "";
}

bool Node::IsNamed(const char* name) const {
    return node_ != nullptr && xmlStrEqual(node_->name, ToXml(name)) != 0;
}

bool Node::HasAttr(const char* name) const {
    return node_ != nullptr && xmlHasProp(node_, ToXml(name)) != nullptr;
}

std::string Node::GetAttr(const char* name) const {
    const xmlAttr* attribute = node_ != nullptr ? xmlHasProp(node_, ToXml(name)) : nullptr;
    if (attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE)
        return ListText(attribute->doc, attribute->children);
    // A default of the document's type, if anything.
    return attribute != nullptr ? TakeString(xmlGetProp(node_, ToXml(name))) : std::string();
}

std::string Node::GetText() const {
    return node_ != nullptr ? ListText(node_->doc, node_->children) : std::string();
}

bool Node::PutText(const std::string& text) {
    if (node_ == nullptr || !IsXmlContent(text.c_str()))
        return false;
    xmlNodeSetContent(node_, ToXml(text.c_str()));
    return true;
}

Node Node::AddChild(const char* name) {
    if (node_ == nullptr || IsAttribute())
        return {};
    return Node(xmlNewChild(node_, nullptr, ToXml(name), nullptr));
}

Node Node::PutChild(const char* name, const std::string& text) {
    if (node_ == nullptr || IsAttribute() || !IsXmlContent(text.c_str()))
        return {};
    return Node(xmlNewChild(node_, nullptr, ToXml(name), ToXml(text.c_str())));
}

Node Node::PutNewAttr(const char* name, const std::string& text) {
    const bool put = node_ != nullptr && !IsAttribute() && IsXmlText(text.c_str()) &&
                     xmlNewProp(node_, ToXml(name), ToXml(text.c_str())) != nullptr;
    return put ? *this : Node();
}

Node Node::PutAttr(const char* name, const std::string& text) {
    const bool put = node_ != nullptr && !IsAttribute() && IsXmlText(text.c_str()) &&
                     xmlSetProp(node_, ToXml(name), ToXml(text.c_str())) != nullptr;
    return put ? *this : Node();
}

Node Node::AddPrevSibling(Node other) {
    if (node_ == nullptr || other.node_ == nullptr)
        return {};
    return Node(xmlAddPrevSibling(node_, other.node_));
}

Node Node::AddNextSibling(Node other) {
    if (node_ == nullptr || other.node_ == nullptr)
        return {};
    return Node(xmlAddNextSibling(node_, other.node_));
}

bool Node::Remove() {
    if (node_ == nullptr)
        return true;
    xmlUnlinkNode(node_);
    xmlFreeNode(node_);
    node_ = nullptr;
    return true;
}

NodeSet::NodeSet(xmlXPathObject* result) : result_(result, FreeResult) {
    // A namespace node is a copy that the result owns and no node of the document; it reads as null.
    const xmlNodeSet* nodes = result->nodesetval;
    for (int i = 0; i < nodes->nodeNr; ++i) {
        if (nodes->nodeTab[i]->type != XML_NAMESPACE_DECL)
            continue;
        xmlXPathNodeSetFreeNs(reinterpret_cast<xmlNs*>(nodes->nodeTab[i]));
        nodes->nodeTab[i] = nullptr;
    }
}

std::size_t NodeSet::Size() const {
    return result_ != nullptr ? static_cast<std::size_t>(result_->nodesetval->nodeNr) : 0;
}

Node NodeSet::At(std::size_t index) const {
    return index < Size() ? Node(result_->nodesetval->nodeTab[index]) : Node();
}

bool NodeSet::RemoveAll() {
    // From the last to the first, so that a node goes before the node that holds it.
    for (std::size_t i = Size(); i > 0; --i) {
        At(i - 1).Remove();
        result_->nodesetval->nodeTab[i - 1] = nullptr;
    }
    result_.reset();
    return true;
}

} // namespace settings
