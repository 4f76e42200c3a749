// `tpcli metrics --listen ADDRESS:PORT`: serves the state's counters at /metrics over HTTP, for a
// Prometheus-style collector to scrape, until SIGTERM (exit code 0) or SIGINT (130).
#pragma once

#include <string>
#include <string_view>

#include "Kel/Expected.h"
#include "tpcli/ExitCode.h"

namespace tpcli {

// Where to listen: a numeric IPv4 address, or an IPv6 address in brackets, and a port; port 0
// takes any free port, which the start-up line names. Names are not looked up: the server binds
// to exactly the address given.
struct ListenAddress {
   std::string host;
   int port = 0;
   bool ipv6 = false;
};
// On failure the reason is the usage message.
Kel::Expected<ListenAddress> parseListenAddress(std::string_view text);

// Loads the state (CommandError "invalid state" when it fails), binds (CommandError "failed"
// when it cannot), writes "tpcli: serving metrics at http://HOST:PORT/metrics" to standard error
// and serves until a stop signal.
ExitCode serveMetrics(std::string const& statePath, ListenAddress const& address);

}  // namespace tpcli
