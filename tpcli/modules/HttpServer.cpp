// The module that serves `tpcli metrics --listen` with cpp-httplib. Nothing but its factory is
// exported, and only tpcli's metrics server loads it.
#include "tpcli/HttpServer.h"

#include <sys/socket.h>

#include <chrono>
#include <memory>
#include <utility>

// Last: with compression on, it brings zlib's global names (such as `intf`), which declarations
// included after it could shadow.
#include <httplib.h>

namespace {

// A collector scrapes one page at a time; two workers keep one slow client from holding it up.
constexpr std::size_t kWorkers = 2;
constexpr std::chrono::seconds kClientPatience{10};

using Handled = httplib::Server::HandlerResponse;

class PageServer final : public tpcli::HttpServer {
 public:
   explicit PageServer(tpcli::HttpPage page) : page_(std::move(page)) {
      server_.new_task_queue = [] { return new httplib::ThreadPool(kWorkers); };
      server_.set_read_timeout(kClientPatience);
      server_.set_write_timeout(kClientPatience);
      server_.set_pre_routing_handler(
          [this](httplib::Request const& request, httplib::Response& response) {
             answer(request, response);
             return Handled::Handled;
          });
   }

   int bind(std::string const& host, int port, bool ipv6) override {
      server_.set_address_family(ipv6 ? AF_INET6 : AF_INET);
      if (port == 0) {
         return server_.bind_to_any_port(host);
      }
      return server_.bind_to_port(host, port) ? port : -1;
   }
   bool listen() override { return server_.listen_after_bind(); }
   bool isRunning() const override { return server_.is_running(); }
   void stop() override { server_.stop(); }

 private:
   void answer(httplib::Request const& request, httplib::Response& response) const {
      if (request.path != page_.path) {
         response.status = 404;
         response.set_content("only " + page_.path + " is served here\n", "text/plain");
      } else if (request.method != "GET" && request.method != "HEAD") {
         response.status = 405;
         response.set_header("Allow", "GET, HEAD");
         response.set_content(page_.path + " answers GET and HEAD\n", "text/plain");
      } else {
         response.set_content(*page_.current(), page_.contentType);
      }
   }

   tpcli::HttpPage const page_;
   httplib::Server server_;
};

}  // namespace

tpcli::HttpServer* tpcliHttpServer(tpcli::HttpPage page) {
   return std::make_unique<PageServer>(std::move(page)).release();
}
