// `tpcli metrics --listen`: the address, the stop signals and the page; the HTTP side is the
// module that tpcli loads for this command alone. Stop signals are blocked in every thread and
// taken by one waiting thread, which stops the server from outside a signal handler.
#include "tpcli/MetricsServer.h"

#include <arpa/inet.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

#include "Strix/Printable.h"
#include "tpcli/DynamicLibrary.h"
#include "tpcli/HttpServer.h"
#include "tpcli/Locations.h"
#include "tpcli/MetricsPage.h"
#include "tpcli/MetricsWriter.h"
#include "tpcli/ValueParsers.h"

namespace tpcli {

namespace {

constexpr std::uint32_t kHighestPort = 65535;

Kel::Failure badAddress(std::string_view text) {
   return Kel::Failure{"--listen: expected IPV4-ADDRESS:PORT or [IPV6-ADDRESS]:PORT, not " +
                       Strix::quoted(text)};
}

bool isAddress(std::string const& host, int family) {
   unsigned char bytes[sizeof(in6_addr)];
   return ::inet_pton(family, host.c_str(), bytes) == 1;
}

// Blocks the stop signals in this thread and in every thread started after it, and restores the
// mask on the way out.
class StopSignals {
 public:
   StopSignals() {
      sigemptyset(&signals_);
      sigaddset(&signals_, SIGTERM);
      sigaddset(&signals_, SIGINT);
      pthread_sigmask(SIG_BLOCK, &signals_, &previous_);
   }
   ~StopSignals() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
   StopSignals(StopSignals const&) = delete;
   StopSignals& operator=(StopSignals const&) = delete;

   // The signal that came within `patience`, or 0.
   int wait(std::chrono::milliseconds patience) const {
      auto const seconds = std::chrono::duration_cast<std::chrono::seconds>(patience);
      timespec const timeout{seconds.count(), std::chrono::nanoseconds(patience - seconds).count()};
      auto const signal = sigtimedwait(&signals_, nullptr, &timeout);
      return signal > 0 ? signal : 0;
   }

 private:
   sigset_t signals_{};
   sigset_t previous_{};
};

void announce(ListenAddress const& address, int port) {
   auto const host = address.ipv6 ? "[" + address.host + "]" : address.host;
   std::fprintf(stderr, "tpcli: serving metrics at http://%s:%d/metrics\n", host.c_str(), port);
}

}  // namespace

Kel::Expected<ListenAddress> parseListenAddress(std::string_view text) {
   auto const colon = text.rfind(':');
   if (colon == std::string_view::npos) {
      return badAddress(text);
   }
   auto host = text.substr(0, colon);
   bool const ipv6 = host.starts_with('[') && host.ends_with(']');
   if (ipv6) {
      host = host.substr(1, host.size() - 2);
   }
   ListenAddress address{std::string(host), 0, ipv6};
   auto const port = parseNumber(text.substr(colon + 1), 0, kHighestPort);
   if (!port || !isAddress(address.host, ipv6 ? AF_INET6 : AF_INET)) {
      return badAddress(text);
   }
   address.port = static_cast<int>(*port);
   return address;
}

ExitCode serveMetrics(std::string const& statePath, ListenAddress const& address) {
   MetricsPage page(statePath);
   StopSignals const stopSignals;
   auto const loaded = makeFromModule<HttpServerFactory>(
       httpServerModulePath(), "the HTTP server", "tpcliHttpServer",
       HttpPage{"/metrics", kOpenMetricsContentType, [&page] { return page.current(); }});
   auto& server = *loaded.object;
   auto const port = server.bind(address.host, address.port, address.ipv6);
   if (port <= 0) {
      throw CommandError(ExitCode::failed, "cannot listen on " + address.host + " port " +
                                               std::to_string(address.port) + ": " +
                                               std::strerror(errno));
   }
   announce(address, port);

   std::atomic<bool> served{false};
   std::atomic<int> stoppedBy{0};
   std::thread waiter([&] {
      constexpr std::chrono::milliseconds kGlance{100};
      while (!served) {
         if (auto const signal = stopSignals.wait(kGlance)) {
            stoppedBy = signal;
            // The server may not have started its loop yet; stopping it before would be lost.
            while (!served && !server.isRunning()) {
               std::this_thread::sleep_for(kGlance / 10);
            }
            server.stop();
            return;
         }
      }
   });
   auto const listened = server.listen();
   served = true;
   waiter.join();
   if (stoppedBy == 0 && !listened) {
      throw CommandError(ExitCode::failed, "stopped serving metrics: the server failed");
   }
   return stoppedBy == SIGINT ? ExitCode::interrupted : ExitCode::done;
}

}  // namespace tpcli
