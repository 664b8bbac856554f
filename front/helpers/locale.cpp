#include "front/helpers/locale.h"

#include <boost/locale/generator.hpp>
#include <clocale>
#include <libintl.h>
#include <locale>

void InitLocale(const char* domain) {
    std::setlocale(LC_ALL, "");
    std::locale::global(boost::locale::generator()(""));
    bindtextdomain(domain, "/usr/share/locale");
    textdomain(domain);
}
