// The renderer's hot paths against /dev/null: a list of one million {"low":n,"high":n} objects,
// the same JSON event sequence through RapidJSON's Writer as the yardstick, and one million
// indented text lines.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "vellum/Renderer.h"

namespace {

constexpr std::uint32_t kItems = 1'000'000;
constexpr std::size_t kBufferSize = 1048576;

class DevNull {
 public:
   DevNull() : fd_(::open("/dev/null", O_WRONLY)) {}
   ~DevNull() { ::close(fd_); }
   int fd() const { return fd_; }

 private:
   int fd_;
};

std::uint32_t high(std::uint32_t low) {
   return low * 3 + 7;
}

void BM_RendererJsonRanges(benchmark::State& state) {
   DevNull devNull;
   for (auto _ : state) {
      vellum::VellumBuffer buffer(devNull.fd(), kBufferSize, 1);
      vellum::RendererV2 renderer(vellum::OutputFormat_t::json, &buffer, true);
      buffer.append("{");
      renderer._startJsonList("ranges");
      for (std::uint32_t n = 0; n < kItems; ++n) {
         renderer._startJsonListEntry();
         renderer._addJsonKeyValuePair("low", n);
         renderer._addJsonKeyValuePair("high", high(n));
         renderer.endJsonDict();
      }
      renderer.endJsonList();
      buffer.append("}\n");
   }
   state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kItems);
}
BENCHMARK(BM_RendererJsonRanges)->Unit(benchmark::kMillisecond);

void BM_RapidJsonWriterRanges(benchmark::State& state) {
   std::unique_ptr<std::FILE, decltype(&std::fclose)> devNull(std::fopen("/dev/null", "w"),
                                                              &std::fclose);
   std::vector<char> storage(kBufferSize);
   for (auto _ : state) {
      rapidjson::FileWriteStream stream(devNull.get(), storage.data(), storage.size());
      rapidjson::Writer<rapidjson::FileWriteStream> writer(stream);
      writer.StartObject();
      writer.Key("ranges");
      writer.StartArray();
      for (std::uint32_t n = 0; n < kItems; ++n) {
         writer.StartObject();
         writer.Key("low");
         writer.Uint(n);
         writer.Key("high");
         writer.Uint(high(n));
         writer.EndObject();
      }
      writer.EndArray();
      writer.EndObject();
      stream.Put('\n');
      stream.Flush();
   }
   state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kItems);
}
BENCHMARK(BM_RapidJsonWriterRanges)->Unit(benchmark::kMillisecond);

void BM_RendererTextLines(benchmark::State& state) {
   DevNull devNull;
   Kel::String const label("Source prefix: ");
   for (auto _ : state) {
      vellum::VellumBuffer buffer(devNull.fd(), kBufferSize, 1);
      vellum::RendererV2 renderer(vellum::OutputFormat_t::text, &buffer, true);
      for (std::uint32_t n = 0; n < kItems; ++n) {
         renderer.writeString(Strix::JustifyLeft<char const*>("", 9, ' '));
         renderer.writeString(label);
         renderer.writeString(n);
         renderer.addFrill("-");
         renderer.writeString(high(n));
         renderer.eol();
      }
   }
   state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kItems);
}
BENCHMARK(BM_RendererTextLines)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
