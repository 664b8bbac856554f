#pragma once

#include "commands/routing/route_store.h"
#include "commands/vtysh/daemon.h"

#include <cstdio>
#include <string>

namespace routing {

using vtysh::Lines;

// A listing of routes, in lines without newlines:
//
//     Table 254 (MAIN)
//     Destination      Netmask          Next hop         Distance Weight
//     -----------      -------          --------         -------- ------
//     10.0.0.0         255.0.0.0        192.168.1.2      10       1

// Those of one table, an empty number being the main one. No lines for no routes at all, and when the
// settings lock is not granted, which is logged.
Lines FormatRoutes(const Routes& routes, const std::string& table);

// Prints the same of each of these tables: a newline behind each line and one more behind each table.
// `printed` tells whether there was anything. False, told on the terminal, when it can't be written.
[[nodiscard]] bool PrintTables(const Routes& routes, const Lines& tables, bool& printed);

// Writes a text to a stream, to its end. False when that fails, which is told on the terminal unless a reader
// has just gone away.
[[nodiscard]] bool WriteText(const std::string& text, std::FILE* stream);

// The routes of every table, without the heading. No lines when the store is without its lock.
Lines FormatRoutesPlain(const RouteStore& store, const Routes& routes);

// The lines with a newline behind each.
std::string JoinLines(const Lines& lines);

} // namespace routing
