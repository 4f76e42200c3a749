// Parsing the numbers of the command line and the filter values of field-set commands.
#include "tpcli/ValueParsers.h"

#include <charconv>
#include <string>

namespace tpcli {

std::optional<std::uint32_t> parseNumber(std::string_view text, std::uint32_t lowest,
                                         std::uint32_t highest) {
   std::uint32_t number = 0;
   auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
   if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
       number < lowest || number > highest) {
      return std::nullopt;
   }
   return number;
}

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
   constexpr double kDay = 86400;
   double seconds = 0;
   auto const [end, error] =
       std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
   // Written so that NaN fails too.
   if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
       !(seconds >= 0 && seconds <= kDay)) {
      return std::nullopt;
   }
   return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

namespace {

Kel::Expected<Classification::NumericalRange> parseRange(std::string_view text,
                                                         std::uint32_t lowest,
                                                         std::uint32_t highest) {
   auto const dash = text.find('-');
   auto const low = parseNumber(text.substr(0, dash), lowest, highest);
   auto const high =
       dash == std::string_view::npos ? low : parseNumber(text.substr(dash + 1), lowest, highest);
   if (!low || !high) {
      return Kel::Failure{"expected a number from " + std::to_string(lowest) + " to " +
                          std::to_string(highest) + " or a range LOW-HIGH"};
   }
   if (*low > *high) {
      return Kel::Failure{"the low end is above the high end"};
   }
   return Classification::NumericalRange{*low, *high};
}

}  // namespace

Kel::Expected<Classification::PortRange> parsePortRange(std::string_view text) {
   return parseRange(text, 0, Classification::kHighestPort);
}

Kel::Expected<Classification::VlanRange> parseVlanRange(std::string_view text) {
   return parseRange(text, Classification::kLowestVlan, Classification::kHighestVlan);
}

Kel::Expected<Quoll::IpGenPrefix> parsePrefixOfFamily(std::string_view text, bool ipv4) {
   auto prefix = Quoll::IpGenPrefix::parse(text);
   if (prefix && prefix->isV4() != ipv4) {
      return Kel::Failure{ipv4 ? "an IPv6 prefix, but the command lists IPv4 field sets"
                               : "an IPv4 prefix, but the command lists IPv6 field sets"};
   }
   return prefix;
}

}  // namespace tpcli
