// Writes a state file of a chosen scale for the loader's benchmark: policies x rules (each rule
// with literal prefixes, a prefix field set, ports, DSCP and actions), interfaces with input and
// output policies and VRFs, prefix field sets with many prefixes, and the status and live
// counters of every policy. The output is deterministic. The prefixes of each field set come in
// ascending order, as a dump of the device's ordered sets writes them, or scrambled with
// --unsorted-prefixes, to measure what an unordered list costs. --except-prefixes makes every
// IPv4 set except that many of its own hosts, spread evenly; --ipv6-prefixes adds an IPv6 set
// "v6-large" of that many /64 prefixes. --rule-prefixes sets how many literal source prefixes each
// rule has (16 by default; the show benchmark uses typical rules of 2).
//
// --peer-rules N writes instead the state that is set beside a packet filter's ruleset of the same
// N rules: one policy on one interface, rule i with source 10.a.b.0/24 and destination
// 192.168.a.0/24 (a = i mod 250, b = (i div 250) mod 250), TCP destination ports 1000-2000, a
// count and a drop, each rule programmed for IPv4 and counting packets and bytes.
//
//   generate_state [--policies N] [--rules N] [--interfaces N] [--prefix-sets N]
//                  [--prefixes N] [--except-prefixes N] [--ipv6-prefixes N]
//                  [--rule-prefixes N] [--unsorted-prefixes] [--peer-rules N] [--output FILE]
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace {

struct Scale {
   std::uint32_t policies = 200;
   std::uint32_t rules = 100;
   std::uint32_t interfaces = 2000;
   std::uint32_t prefixSets = 50;
   std::uint32_t prefixes = 100000;
   std::uint32_t exceptPrefixes = 1;
   std::uint32_t ipv6Prefixes = 0;
   std::uint32_t rulePrefixes = 16;
   std::uint32_t peerRules = 0;
   bool unsortedPrefixes = false;
   std::string output = "-";
};

constexpr std::uint32_t kFlushSize = 1 << 20;

// Buffered output; text is written in large pieces.
class Output {
 public:
   explicit Output(std::FILE* file) : file_(file) {}
   ~Output() { flush(); }
   Output(Output const&) = delete;
   Output& operator=(Output const&) = delete;

   Output& operator<<(std::string_view text) {
      buffer_ += text;
      if (buffer_.size() >= kFlushSize) {
         flush();
      }
      return *this;
   }
   Output& operator<<(std::uint64_t number) {
      char digits[24];
      return *this << std::string_view(digits, std::to_chars(digits, digits + 24, number).ptr);
   }

   bool flush() {
      bool const written = std::fwrite(buffer_.data(), 1, buffer_.size(), file_) == buffer_.size();
      buffer_.clear();
      return written && std::fflush(file_) == 0;
   }

 private:
   std::FILE* file_;
   std::string buffer_;
};

// A separator before every element but the first.
class Separator {
 public:
   std::string_view operator()() { return std::exchange(first_, false) ? "" : ", "; }

 private:
   bool first_ = true;
};

std::string dottedQuad(std::uint32_t address) {
   return std::to_string(address >> 24) + "." + std::to_string(address >> 16 & 0xff) + "." +
          std::to_string(address >> 8 & 0xff) + "." + std::to_string(address & 0xff);
}

// The i-th host of field set `set`. Unsorted, the index is multiplied by an odd number, which
// permutes the 24 low bits: the hosts stay distinct but come out of order.
std::uint32_t setHost(Scale const& scale, std::uint32_t set, std::uint32_t index) {
   std::uint32_t const position = scale.unsortedPrefixes ? index * 2654435761u : index;
   return (set + 1) << 24 | (position & 0xffffff);
}

// Every `stride`-th host of the set, `count` of them; the stride spreads them over the set.
void writeExceptPrefixes(Output& out, Scale const& scale, std::uint32_t set) {
   std::uint32_t const count = std::min(scale.exceptPrefixes, scale.prefixes);
   std::uint32_t const stride = count ? scale.prefixes / count : 1;
   Separator prefixes;
   for (std::uint32_t index = 0; index < count; ++index) {
      out << prefixes() << "\"" << dottedQuad(setHost(scale, set, index * stride)) << "/32\"";
   }
}

void writeIpv6Sets(Output& out, Scale const& scale) {
   out << "\"ipv6Prefix\": {\"v6\": {\"prefixes\": [\"2001:db8::/32\"]}";
   if (scale.ipv6Prefixes > 0) {
      out << ", \"v6-large\": {\"prefixes\": [";
      Separator prefixes;
      char text[40];
      for (std::uint32_t index = 0; index < scale.ipv6Prefixes; ++index) {
         std::snprintf(text, sizeof text, "2001:db8:%x:%x::/64", index >> 16, index & 0xffff);
         out << prefixes() << "\"" << text << "\"";
      }
      out << "]}";
   }
   out << "}";
}

void writeFieldSets(Output& out, Scale const& scale) {
   out << "\"fieldSets\": {\"ipv4Prefix\": {";
   Separator sets;
   for (std::uint32_t set = 0; set < scale.prefixSets; ++set) {
      out << sets() << "\"set-" << set << "\": {\"prefixes\": [";
      Separator prefixes;
      for (std::uint32_t index = 0; index < scale.prefixes; ++index) {
         out << prefixes() << "\"" << dottedQuad(setHost(scale, set, index)) << "/32\"";
      }
      out << "], \"exceptPrefixes\": [";
      writeExceptPrefixes(out, scale, set);
      out << "]}";
   }
   out << "}, ";
   writeIpv6Sets(out, scale);
   out << ", \"l4Port\": {\"web\": {\"ports\": [\"80\", \"443\", \"8000-8999\"]}}, "
          "\"vlan\": {\"users\": {\"vlans\": [\"100-199\"]}}}";
}

void writeRule(Output& out, Scale const& scale, std::uint32_t policy, std::uint32_t rule) {
   out << "\"rule-" << rule << "\": {\"sequence\": " << std::uint64_t{rule + 1} * 10
       << ", \"match\": {\"ipv4\": {\"sources\": [";
   Separator prefixes;
   for (std::uint32_t index = 0; index < scale.rulePrefixes; ++index) {
      std::uint32_t const network = (policy * scale.rules + rule) * scale.rulePrefixes + index;
      out << prefixes() << "\"" << dottedQuad(0x0a000000 | (network & 0xffff) << 8) << "/24\"";
   }
   out << "], \"destinationPrefixSets\": [\"set-"
       << (policy + rule) % std::max(scale.prefixSets, 1u)
       << "\"], \"protocols\": {\"6\": {\"ports\": [{\"destinations\": [\"" << 1024 + rule
       << "\"], \"sourceFieldSets\": [\"web\"]}], \"tcpFlags\": [{\"syn\": true, \"ack\": "
          "false}]}, "
          "\"17\": {}}, \"dscps\": [\""
       << rule % 64 << "\"]}}, \"actions\": {\"count\": {";
   if (rule % 2) {
      out << "\"counter\": \"hits\"";
   }
   out << "}, \"setDscp\": " << rule % 64 << "}}";
}

void writePolicies(Output& out, Scale const& scale) {
   out << "\"trafficPolicies\": {";
   Separator policies;
   for (std::uint32_t policy = 0; policy < scale.policies; ++policy) {
      out << policies() << "\"policy-" << policy
          << "\": {\"namedCounters\": [\"hits\"], \"rules\": {";
      Separator rules;
      for (std::uint32_t rule = 0; rule < scale.rules; ++rule) {
         out << rules();
         writeRule(out, scale, policy, rule);
      }
      out << "}}";
   }
   out << "}";
}

std::uint64_t policyOf(Scale const& scale, std::uint32_t intf) {
   return intf % std::max(scale.policies, 1u);
}

void writeInterfaces(Output& out, Scale const& scale) {
   out << "\"interfaces\": {\"input\": {";
   Separator input;
   for (std::uint32_t intf = 0; intf < scale.interfaces; ++intf) {
      out << input() << "\"Ethernet" << intf + 1 << "\": \"policy-" << policyOf(scale, intf)
          << "\"";
   }
   out << "}, \"output\": {";
   Separator output;
   for (std::uint32_t intf = 0; intf < scale.interfaces; intf += 2) {
      out << output() << "\"Ethernet" << intf + 1 << "\": \"policy-" << policyOf(scale, intf + 1)
          << "\"";
   }
   out << "}, \"vrf\": {";
   Separator vrf;
   for (std::uint32_t intf = 0; intf < scale.interfaces; ++intf) {
      out << vrf() << "\"Ethernet" << intf + 1 << "\": \"" << (intf % 4 ? "default" : "blue")
          << "\"";
   }
   out << "}}, \"vrfs\": {\"names\": [\"default\", \"blue\"], "
          "\"cpuPolicy\": {\"default\": \"policy-0\", \"all\": \"policy-0\"}}";
}

void writePolicyStatus(Output& out, Scale const& scale, std::uint32_t policy) {
   out << "\"policy-" << policy << "\": {\"rules\": {";
   Separator rules;
   for (std::uint32_t rule = 0; rule < scale.rules; ++rule) {
      out << rules() << "\"rule-" << rule << "\": [\"ipv4\"]";
   }
   out << "}, \"interfaces\": {";
   Separator interfaces;
   for (std::uint32_t intf = policy; intf < scale.interfaces; intf += scale.policies) {
      out << interfaces() << "\"Ethernet" << intf + 1 << "\": {\"ipv4\": {\"state\": "
          << (intf % 10 ? "\"programmed\"}" : "\"failed\", \"error\": \"hardware table full\"}")
          << ", \"ipv6\": {\"state\": \"programmed\"}}";
   }
   out << "}, \"ruleCounters\": {";
   Separator counters;
   for (std::uint32_t rule = 0; rule < scale.rules; rule += 2) {
      out << counters() << "\"rule-" << rule << "\": {\"instanceId\": " << rule + 1
          << ", \"packets\": " << std::uint64_t{rule} * 1000 + policy
          << ", \"bytes\": " << std::uint64_t{rule} * 64000 << "}";
   }
   out << "}, \"namedCounters\": {\"hits\": {\"instanceId\": 1, \"packets\": " << policy
       << ", \"bytes\": " << std::uint64_t{policy} * 64 << "}}}";
}

void writeStatus(Output& out, Scale const& scale) {
   out << "\"status\": {\"interfaceInput\": {\"byteCountersSupported\": true, \"policies\": {";
   Separator policies;
   for (std::uint32_t policy = 0; policy < scale.policies; ++policy) {
      out << policies();
      writePolicyStatus(out, scale, policy);
   }
   out << "}}}";
}

void writePeerRule(Output& out, std::uint32_t rule) {
   std::uint32_t const a = rule % 250;
   std::uint32_t const b = rule / 250 % 250;
   out << "\"rule-" << rule << "\": {\"sequence\": " << std::uint64_t{rule} + 1
       << ", \"match\": {\"ipv4\": {\"sources\": [\"10." << a << "." << b
       << ".0/24\"], \"destinations\": [\"192.168." << a
       << ".0/24\"], \"protocols\": {\"6\": {\"ports\": [{\"destinations\": "
          "[\"1000-2000\"]}]}}}}, \"actions\": {\"count\": {}, \"drop\": true}}";
}

void writePeerRuleStatus(Output& out, std::uint32_t rules) {
   out << "\"status\": {\"interfaceInput\": {\"byteCountersSupported\": true, \"policies\": "
          "{\"filter\": {\"rules\": {";
   Separator statuses;
   for (std::uint32_t rule = 0; rule < rules; ++rule) {
      out << statuses() << "\"rule-" << rule << "\": [\"ipv4\"]";
   }
   out << "}, \"interfaces\": {\"Ethernet1\": {\"ipv4\": {\"state\": \"programmed\"}}}, "
          "\"ruleCounters\": {";
   Separator counters;
   for (std::uint32_t rule = 0; rule < rules; ++rule) {
      out << counters() << "\"rule-" << rule << "\": {\"instanceId\": 1, \"packets\": " << rule
          << ", \"bytes\": " << std::uint64_t{rule} * 64 << "}";
   }
   out << "}}}}}";
}

void writePeerState(Output& out, std::uint32_t rules) {
   out << "{\"hardware\": {\"ingressCounterGranularity\": \"perPolicy\"},\n"
          "\"trafficPolicies\": {\"filter\": {\"rules\": {";
   Separator separator;
   for (std::uint32_t rule = 0; rule < rules; ++rule) {
      out << separator();
      writePeerRule(out, rule);
   }
   out << "}}},\n\"interfaces\": {\"input\": {\"Ethernet1\": \"filter\"}},\n";
   writePeerRuleStatus(out, rules);
   out << "}\n";
}

bool writeState(std::FILE* file, Scale const& scale) {
   Output out(file);
   if (scale.peerRules > 0) {
      writePeerState(out, scale.peerRules);
      return out.flush();
   }
   out << "{\"hardware\": {\"sharedMemoryCounters\": false, \"ingressCounterGranularity\": "
          "\"perPolicy\"},\n";
   writeFieldSets(out, scale);
   out << ",\n";
   writePolicies(out, scale);
   out << ",\n";
   writeInterfaces(out, scale);
   out << ",\n";
   writeStatus(out, scale);
   out << "}\n";
   return out.flush();
}

bool parseCount(char const* text, std::uint32_t& count) {
   auto const end = text + std::strlen(text);
   auto const parsed = std::from_chars(text, end, count);
   return parsed.ec == std::errc{} && parsed.ptr == end;
}

bool parseArguments(int argc, char** argv, Scale& scale) {
   struct Option {
      std::string_view name;
      std::uint32_t Scale::*count;
   };
   constexpr Option kOptions[] = {
       {"--policies", &Scale::policies},          {"--rules", &Scale::rules},
       {"--interfaces", &Scale::interfaces},      {"--prefix-sets", &Scale::prefixSets},
       {"--prefixes", &Scale::prefixes},          {"--except-prefixes", &Scale::exceptPrefixes},
       {"--ipv6-prefixes", &Scale::ipv6Prefixes}, {"--rule-prefixes", &Scale::rulePrefixes},
       {"--peer-rules", &Scale::peerRules}};
   for (int index = 1; index < argc; ++index) {
      std::string_view const name = argv[index];
      if (name == "--unsorted-prefixes") {
         scale.unsortedPrefixes = true;
         continue;
      }
      if (index + 1 == argc) {
         return false;
      }
      char const* const value = argv[++index];
      if (name == "--output") {
         scale.output = value;
         continue;
      }
      auto const* option = std::find_if(std::begin(kOptions), std::end(kOptions),
                                        [name](Option const& known) { return known.name == name; });
      if (option == std::end(kOptions) || !parseCount(value, scale.*(option->count))) {
         return false;
      }
   }
   // A set's hosts are numbered within its own /8.
   return scale.prefixes <= (1u << 24);
}

}  // namespace

int main(int argc, char** argv) {
   Scale scale;
   if (!parseArguments(argc, argv, scale)) {
      std::fputs(
          "usage: generate_state [--policies N] [--rules N] [--interfaces N] "
          "[--prefix-sets N] [--prefixes N] [--except-prefixes N] [--ipv6-prefixes N] "
          "[--rule-prefixes N] [--unsorted-prefixes] [--peer-rules N] [--output FILE]\n",
          stderr);
      return 2;
   }
   std::FILE* file = scale.output == "-" ? stdout : std::fopen(scale.output.c_str(), "wb");
   if (!file) {
      std::fprintf(stderr, "generate_state: cannot write %s: %s\n", scale.output.c_str(),
                   std::strerror(errno));
      return 1;
   }
   bool const written = writeState(file, scale);
   if (file != stdout) {
      std::fclose(file);
   }
   if (!written) {
      std::fprintf(stderr, "generate_state: writing failed: %s\n", std::strerror(errno));
   }
   return written ? 0 : 1;
}
