#include "front/helpers/xml.h"

#include "platform/log.h"

#include <cstdarg>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace {

[[gnu::format(printf, 2, 3)]] void LogXmlMessage(void* /*context*/, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    shell_log_event(kLogError, 0, format, arguments);
    va_end(arguments);
}

} // namespace

void InitXml() {
    xmlInitParser();
    xmlKeepBlanksDefault(0);
    xmlSetGenericErrorFunc(nullptr, LogXmlMessage);
}

void CleanupXml() {
    xmlCleanupParser();
}
