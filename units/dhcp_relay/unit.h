#pragma once

struct _xmlURI;

// The handler of unit://dhcp-relay. The fragment, where there is one, is the ID of a relay. Without a query
// it writes the daemons' settings, of that relay alone when there is an ID, and of all for a null URI; the
// queries are
//
//     check                        check the relays, or the one of the ID
//     print, dump                  show the relays, or the settings file
//     convert-daemon-settings=<path>
//     required=<interface>         write the ID of the relay that uses the interface
//     add-server&server=<address>&server_id=<0 or 1>&interface=<name>     with an ID
//     add-listen-interface&interface=<name>                               with an ID
//
// Every failure but that of "required" is reported.
[[nodiscard]] bool DhcpRelayUnit(const _xmlURI* uri);
