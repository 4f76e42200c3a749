// Reflection values to JSON through the renderer: records become objects, collections with values
// become objects keyed by their keys' text, sets become lists, and references to other modules'
// entities become text.
#include "tpcli/RecordsWriter.h"

#include <algorithm>
#include <string>

#include "Kel/Entity.h"
#include "vellum/Renderer.h"

namespace tpcli {

namespace {

constexpr std::string_view kRecordNamespace = "TrafficPolicyCli::";

bool isRecord(Kel::Entity const& entity) {
   return entity.fwkType().name().starts_with(kRecordNamespace);
}

std::string referenceText(Kel::Entity const& entity) {
   std::string text = entity.fwkType().name();
   if (auto const name = entity.attribute("name"); name && name->asString()) {
      text += ' ';
      text += name->asString()->view();
   }
   return text;
}

// A value as a JSON object key or a list element's text.
std::string keyText(Kel::Value const& key) {
   using Kind = Kel::Value::Kind;
   switch (key.kind()) {
      case Kind::string:
         return key.asString()->stringValue();
      case Kind::unsignedInteger:
         return std::to_string(*key.asUnsigned());
      case Kind::integer:
         return std::to_string(*key.asInteger());
      case Kind::boolean:
         return *key.asBool() ? "true" : "false";
      case Kind::entity:
         return key.asEntity() ? referenceText(*key.asEntity()) : "null";
      case Kind::null:
      case Kind::collection:
         return "null";
   }
   return "null";
}

class RecordsWriter {
 public:
   explicit RecordsWriter(vellum::RendererV2& renderer) : renderer_(renderer) {}

   void writeAttributes(Kel::Entity const& entity) {
      for (auto const* attribute : entity.fwkType().attributes()) {
         writeValue(attribute->name, attribute->read(entity));
      }
   }

 private:
   // An empty key makes a list element.
   void open(std::string_view key, bool list) {
      if (key.empty() && !list) {
         renderer_._startJsonListEntry();
      } else if (list) {
         renderer_._startJsonList(key);
      } else {
         renderer_._startJsonObject(key);
      }
   }

   void writeValue(std::string_view key, Kel::Value const& value) {
      using Kind = Kel::Value::Kind;
      switch (value.kind()) {
         case Kind::null:
            renderer_._addJsonKeyValuePair(key, nullptr);
            return;
         case Kind::boolean:
            renderer_._addJsonKeyValuePair(key, *value.asBool());
            return;
         case Kind::unsignedInteger:
            renderer_._addJsonKeyValuePair(key, *value.asUnsigned());
            return;
         case Kind::integer:
         case Kind::string:
            renderer_._addJsonKeyValuePair(key, keyText(value));
            return;
         case Kind::entity:
            writeEntity(key, value.asEntity());
            return;
         case Kind::collection:
            writeCollection(key, *value.asEntries());
            return;
      }
   }

   void writeEntity(std::string_view key, Kel::Ptr<Kel::Entity const> const& entity) {
      if (!entity) {
         renderer_._addJsonKeyValuePair(key, nullptr);
      } else if (isRecord(*entity)) {
         open(key, false);
         writeAttributes(*entity);
         renderer_.endJsonDict();
      } else {
         renderer_._addJsonKeyValuePair(key, referenceText(*entity));
      }
   }

   void writeCollection(std::string_view key, Kel::Value::Entries const& entries) {
      bool const isSet = std::all_of(entries.begin(), entries.end(),
                                     [](auto const& entry) { return entry.value.isNull(); });
      if (isSet && !entries.empty()) {
         open(key, true);
         for (auto const& entry : entries) {
            renderer_._addJsonKeyValuePair("", keyText(entry.key));
         }
         renderer_.endJsonList();
         return;
      }
      open(key, false);
      for (auto const& entry : entries) {
         writeValue(keyText(entry.key), entry.value);
      }
      renderer_.endJsonDict();
   }

   vellum::RendererV2& renderer_;
};

}  // namespace

void writeRecords(TrafficPolicyCli::ShowCommand const& command, int fd) {
   vellum::VellumBuffer buffer(fd, 1048576, 1);
   vellum::RendererV2 renderer(vellum::OutputFormat_t::json, &buffer, true);
   buffer.append("{");
   RecordsWriter(renderer).writeAttributes(command);
   buffer.append("}\n");
}

}  // namespace tpcli
