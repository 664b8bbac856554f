#pragma once

#include "settings/text.h"

#include <concepts>
#include <cstddef>
#include <memory>
#include <string>

struct _xmlNode;
struct _xmlXPathObject;

namespace settings {

// A node of a settings document: an element or an attribute. It owns nothing and is valid as long as the
// document is. Every operation on a null node is harmless. Formatted texts hold at most 8191 bytes; what
// is longer is cut silently.
class Node {
public:
    Node() = default;
    explicit Node(_xmlNode* node) : node_(node) {}

    bool IsNull() const { return node_ == nullptr; }
    explicit operator bool() const { return node_ != nullptr; }
    bool operator==(const Node&) const = default;

    Node Parent() const;
    // Neighbours are elements; texts and comments between them are passed over.
    Node FirstChild() const;
    Node PrevSibling() const;
    Node NextSibling() const;

    std::string Name() const;
    bool IsNamed(const char* name) const;
    bool HasAttr(const char* name) const;
    // "" when the attribute is absent.
    std::string GetAttr(const char* name) const;
    // "" when the node has no children.
    std::string GetText() const;

    // Texts go into the document unescaped, with libxml2's meaning of "&". A text that XML can't hold (no
    // UTF-8, a control character, a "&" that begins no reference) is refused with an error.
    template <class... Arguments>
    [[nodiscard]] bool SetText(FormatFor<Arguments...> format, const Arguments&... arguments) {
        return PutText(FormatText<Arguments...>(format, arguments...));
    }
    template <std::same_as<std::string> Text>
    [[nodiscard]] bool SetText(const Text& text) {
        return SetText("%s", text);
    }

    // The new child, a null node on failure and on an attribute node; the short form adds no text.
    template <class... Arguments>
    Node AddChild(const char* name, FormatFor<Arguments...> format, const Arguments&... arguments) {
        return PutChild(name, FormatText<Arguments...>(format, arguments...));
    }
    template <std::same_as<std::string> Text>
    Node AddChild(const char* name, const Text& text) {
        return AddChild(name, "%s", text);
    }
    Node AddChild(const char* name);

    // This node, or a null node on failure and on an attribute node. NewAttr does not look for an older
    // attribute of that name, SetAttr replaces it.
    template <class... Arguments>
    Node NewAttr(const char* name, FormatFor<Arguments...> format, const Arguments&... arguments) {
        return PutNewAttr(name, FormatText<Arguments...>(format, arguments...));
    }
    template <std::same_as<std::string> Text>
    Node NewAttr(const char* name, const Text& text) {
        return NewAttr(name, "%s", text);
    }
    template <class... Arguments>
    Node SetAttr(const char* name, FormatFor<Arguments...> format, const Arguments&... arguments) {
        return PutAttr(name, FormatText<Arguments...>(format, arguments...));
    }
    template <std::same_as<std::string> Text>
    Node SetAttr(const char* name, const Text& text) {
        return SetAttr(name, "%s", text);
    }

    // Move `other` to this node's side and give it; a null node when either is null.
    Node AddPrevSibling(Node other);
    Node AddNextSibling(Node other);
    // Takes the node out of its document, frees it, and makes this value null. Always true.
    bool Remove();

private:
    friend class File;
    bool IsAttribute() const;
    bool PutText(const std::string& text);
    Node PutChild(const char* name, const std::string& text);
    Node PutNewAttr(const char* name, const std::string& text);
    Node PutAttr(const char* name, const std::string& text);

    _xmlNode* node_ = nullptr;
};

// The result of a query. Copies share it.
class NodeSet {
public:
    NodeSet() = default;
    // Takes over a result that holds at least one node.
    explicit NodeSet(_xmlXPathObject* result);

    bool IsEmpty() const { return result_ == nullptr; }
    explicit operator bool() const { return result_ != nullptr; }
    std::size_t Size() const;
    // A null node at or behind the end.
    Node At(std::size_t index) const;
    // Removes every node of the set from its document and empties the set. Always true. Copies of the set
    // still hold the result, with null nodes.
    bool RemoveAll();

private:
    std::shared_ptr<_xmlXPathObject> result_;
};

} // namespace settings
