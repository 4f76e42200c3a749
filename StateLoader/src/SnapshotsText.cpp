// Writing the snapshot stores as JSON by hand: the stores are walked once in key order, so the
// entries of one policy come together and each policy's object is opened when its first entry
// comes. Names are escaped as JSON strings; numbers are written exactly (the seconds of a
// timestamp in their shortest form that reads back to the same value).
#include "SnapshotsText.h"

#include <charconv>
#include <string_view>

#include "SnapshotDirections.h"

namespace StateLoader {

namespace {

void appendString(std::string& text, std::string_view value) {
   constexpr char kHex[] = "0123456789abcdef";
   text += '"';
   for (char const character : value) {
      auto const code = static_cast<unsigned char>(character);
      if (character == '"' || character == '\\') {
         text += '\\';
         text += character;
      } else if (code < 0x20) {
         text += "\\u00";
         text += kHex[code >> 4];
         text += kHex[code & 0xf];
      } else {
         text += character;
      }
   }
   text += '"';
}

template <typename Number>
void appendNumber(std::string& text, Number number) {
   char digits[32];
   text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void appendMember(std::string& text, std::string_view key, std::uint64_t number) {
   text += ", ";
   appendString(text, key);
   text += ": ";
   appendNumber(text, number);
}

// {"instanceId": N, "packets": N, "bytes": N without the closing brace, for more members to follow.
void appendCounts(std::string& text, std::uint64_t instanceId, PolicyMap::PacketAndByte count) {
   text += "{\"instanceId\": ";
   appendNumber(text, instanceId);
   appendMember(text, "packets", count.packets);
   appendMember(text, "bytes", count.bytes);
}

void appendRule(std::string& text, TrafficPolicy::CounterVersion const& version) {
   text += "{\"instanceId\": ";
   appendNumber(text, version.instanceId);
   appendMember(text, "packets", version.pkts);
   text += '}';
}

void appendNamed(std::string& text, TrafficPolicy::NamedCounterVersion const& version) {
   appendCounts(text, version.instanceId(), version.totalCount());
   if (!version.perIntfCount().empty()) {
      text += ", \"interfaces\": {";
      char const* separator = "";
      for (auto const& [intf, entry] : version.perIntfCount()) {
         text += separator;
         appendString(text, intf.stringValue());
         text += ": ";
         appendCounts(text, entry->instanceId(), entry->countData());
         text += '}';
         separator = ", ";
      }
      text += '}';
   }
   text += '}';
}

// `key: {"POLICY": {"NAME": ENTRY, ...}, ...}` over a store map keyed by (policy, name).
template <typename Map, typename NameOf, typename AppendEntry>
void appendSection(std::string& text, std::string_view key, Map const& map, NameOf nameOf,
                   AppendEntry appendEntry) {
   text += ",\n      ";
   appendString(text, key);
   text += ": {";
   Kel::String const* policy = nullptr;
   for (auto const& [entryKey, entry] : map) {
      bool const samePolicy = policy && *policy == entryKey.policyName;
      text += samePolicy ? ",\n" : policy ? "\n         },\n         " : "\n         ";
      if (!samePolicy) {
         policy = &entryKey.policyName;
         appendString(text, policy->view());
         text += ": {\n";
      }
      text += "            ";
      appendString(text, nameOf(entryKey).view());
      text += ": ";
      appendEntry(text, entry);
   }
   text += policy ? "\n         }\n      }" : "}";
}

void appendStore(std::string& text, TrafficPolicy::Counter const& counter) {
   text += "{\n      \"timestamp\": ";
   appendNumber(text, counter.timestamp());
   appendSection(
       text, "ruleCounters", counter.snapshot(),
       [](TrafficPolicy::CounterKey const& key) -> Kel::String const& { return key.className; },
       appendRule);
   appendSection(
       text, "namedCounters", counter.namedSnapshot(),
       [](TrafficPolicy::NamedCounterKey const& key) -> Kel::String const& {
          return key.counterName;
       },
       [](std::string& into, Kel::Ptr<TrafficPolicy::NamedCounterVersion> const& version) {
          appendNamed(into, *version);
       });
   text += "\n   }";
}

}  // namespace

std::string snapshotsText(DeviceState const& state) {
   std::string text = "{";
   char const* separator = "\n   ";
   for (auto const& direction : kSnapshotDirections) {
      text += separator;
      appendString(text, direction.key);
      text += ": ";
      appendStore(text, *(state.*direction.direction).counter);
      separator = ",\n   ";
   }
   text += "\n}\n";
   return text;
}

}  // namespace StateLoader
