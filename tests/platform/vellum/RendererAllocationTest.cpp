// Rendering allocates nothing per value: once the buffer exists, writing any number of records
// in either format makes no call to operator new.
#include <gtest/gtest.h>

#include <memory>

#include "support/AllocationCounter.h"
#include "support/CapturedOutput.h"
#include "vellum/Renderer.h"

namespace {

void renderRecords(vellum::RendererV2& renderer, int records, Kel::String const& name,
                   Quoll::IpGenPrefix const& prefix) {
   renderer._startJsonList("records");
   for (int i = 0; i < records; ++i) {
      auto const number = static_cast<std::uint32_t>(i);
      renderer._startJsonListEntry();
      renderer.writeString(Strix::JustifyLeft<char const*>("", 6, ' '));
      renderer._addText("Name: ", name);
      renderer._addJsonKeyValuePair("name", name);
      renderer.addFrill(", ");
      renderer._addText("Count: ", static_cast<unsigned long>(number));
      renderer._addJsonKeyValuePair("count", number);
      renderer.writeString(" ");
      renderer.writeString(prefix);
      renderer._addJsonKeyValuePair("prefix", prefix);
      renderer._addJsonKeyValuePair("escaped", "tab\there \"quoted\"");
      renderer._addJsonKeyValuePair("flag", i % 2 == 0);
      renderer.eol();
      renderer.endJsonDict();
   }
   renderer.endJsonList();
}

TEST(RendererAllocation, TheCounterSeesAllocations) {
   auto const before = testing_support::allocationCount();
   auto const probe = std::make_unique<int>(1);
   EXPECT_EQ(testing_support::allocationCount() - before, 1u);
}

TEST(RendererAllocation, NoAllocationPerRecord) {
   Kel::String const name("a-policy-name-longer-than-the-small-string-buffer");
   auto const prefix = Quoll::IpGenPrefix::parse("2001:db8:1234::/48").value();
   for (auto format : {vellum::OutputFormat_t::text, vellum::OutputFormat_t::json}) {
      testing_support::MemoryFile file;
      vellum::VellumBuffer buffer(file.fd(), 1048576, 1);
      vellum::RendererV2 renderer(format, &buffer, true);
      auto const before = testing_support::allocationCount();
      renderRecords(renderer, 50000, name, prefix);
      buffer.flush();
      EXPECT_EQ(testing_support::allocationCount() - before, 0u)
          << "format " << static_cast<int>(format);
   }
}

}  // namespace
