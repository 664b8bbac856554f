#pragma once

#include "settings/node.h"

#include <memory>
#include <string>

struct _xmlDoc;
struct _xmlXPathContext;

namespace settings {

// The folder of the units' settings files, one for the process. It is taken as given.
void SetDirectory(const std::string& path);
const std::string& GetDirectory();

// <directory>/<name>.xml
std::string GetFilePath(const std::string& name);

// Whether the text can stand in single quotes in a query: XPath 1.0 has no way to quote a quote.
[[nodiscard]] bool IsLiteral(const std::string& text);

// A unit's settings file, for the length of one operation:
//
//     <?xml version="1.0" encoding="utf-8"?>
//     <unit name="dhcp-server">
//       ...the unit's own schema
//     </unit>
//
// It takes no lock, and nodes and node sets are valid only until the next Load or Close. Failures are
// reported here. Queries are XPath 1.0 in printf-style, cut silently at 8191 bytes; a query that is no
// XPath, or has no nodes as its result, finds nothing.
class File {
public:
    // `path` is an explicit file; "" means GetFilePath(name).
    File(const char* name, const char* path);
    virtual ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    // From now on the file is written readable by its owner alone, and no fault of it brings its text to the
    // log.
    void KeepPrivate() { private_ = true; }

    // Reads the file; one that can't be read is an empty document in memory.
    [[nodiscard]] bool Load();
    // Writes the document straight onto the file, making the settings folder if need be. On a full disk the
    // file stays as it was.
    [[nodiscard]] bool Save();
    void Close();

    Node Root() const;
    template <class... Arguments>
    NodeSet Select(FormatFor<Arguments...> format, const Arguments&... arguments) const {
        return Evaluate(FormatText<Arguments...>(format, arguments...), {});
    }
    template <class... Arguments>
    Node SelectFirst(FormatFor<Arguments...> format, const Arguments&... arguments) const {
        return Select<Arguments...>(format, arguments...).At(0);
    }
    // The same with a path that starts at a node of this document.
    template <class... Arguments>
    NodeSet SelectFrom(Node start, FormatFor<Arguments...> format, const Arguments&... arguments) const {
        return Evaluate(FormatText<Arguments...>(format, arguments...), start);
    }
    // The text of the first node found, "" when there is none.
    template <class... Arguments>
    std::string GetText(FormatFor<Arguments...> format, const Arguments&... arguments) const {
        return SelectFirst<Arguments...>(format, arguments...).GetText();
    }

private:
    struct FreeDocument {
        void operator()(_xmlDoc* document) const;
    };
    struct FreeContext {
        void operator()(_xmlXPathContext* context) const;
    };

    std::string TargetPath() const;
    bool ReadDocument(const std::string& path);
    bool MakeEmptyDocument();
    bool WriteDocument(const std::string& path) const;
    bool MakeDirectory() const;
    NodeSet Evaluate(const std::string& expression, Node start) const;

    std::string name_;
    std::string path_;
    bool private_ = false;
    // The context refers to the document, so it is destroyed first.
    std::unique_ptr<_xmlDoc, FreeDocument> document_;
    std::unique_ptr<_xmlXPathContext, FreeContext> context_;
};

} // namespace settings
