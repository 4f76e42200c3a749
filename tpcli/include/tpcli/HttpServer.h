// The HTTP server behind `tpcli metrics --listen`: one page at one path. It lives in a module of
// its own that only that command loads. The HTTP library it uses comes with TLS and compression
// built in, and linking it into tpcli would map those libraries and run their start-up in every
// show: several megabytes of resident memory and milliseconds of start-up for nothing.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tpcli {

struct HttpPage {
   std::string path;
   std::string contentType;
   // The page's text as it is now; called from the server's worker threads.
   std::function<std::shared_ptr<std::string const>()> current;
};

// GET and HEAD of the page's path are answered with the page; every other path is 404 and every
// other method 405.
class HttpServer {
 public:
   virtual ~HttpServer() = default;

   // Binds to the numeric address `host` (IPv6 without brackets) and `port`, any free port for 0;
   // the port bound, or -1 with errno set.
   virtual int bind(std::string const& host, int port, bool ipv6) = 0;
   // Serves until stop(); false when the server failed.
   virtual bool listen() = 0;
   virtual bool isRunning() const = 0;
   // From another thread; a stop before listen() has started its loop is lost.
   virtual void stop() = 0;
};

}  // namespace tpcli

// What the module exports; tpcli finds it by name and owns what it returns.
extern "C" [[gnu::visibility("default")]] tpcli::HttpServer* tpcliHttpServer(tpcli::HttpPage page);

namespace tpcli {
using HttpServerFactory = decltype(&tpcliHttpServer);
}  // namespace tpcli
