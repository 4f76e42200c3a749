// Parsing a command's words into a request, one small function per branch of the grammar.
#include "tpcli/CommandGrammar.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tpcli/ValueParsers.h"
#include "tpcli/WordReader.h"

namespace tpcli {

namespace {

using namespace std::string_view_literals;

constexpr std::array kVerbs{"show"sv, "clear"sv};
constexpr std::array kTrafficPolicy{"traffic-policy"sv};
constexpr std::array kShowTargets{"policy"sv, "interface"sv, "cpu"sv, "field-set"sv};
constexpr std::array kAttachments{"interface"sv, "cpu"sv};
constexpr std::array kViews{"summary"sv, "detail"sv, "errors"sv, "counters"sv};
constexpr std::array kDirectionsOrViews{"input"sv,  "output"sv, "summary"sv,
                                        "detail"sv, "errors"sv, "counters"sv};
constexpr std::array kDirections{"input"sv, "output"sv};
constexpr std::array kFieldSetTypes{"ipv4"sv, "ipv6"sv, "l4-port"sv, "vlan"sv};
constexpr std::array kPrefix{"prefix"sv};
constexpr std::array kContains{"contains"sv};
constexpr std::array kExact{"exact"sv};
constexpr std::array kCounters{"counters"sv};
constexpr std::array kPipe{"|"sv};
constexpr std::array kJson{"json"sv};

PolicyView viewNamed(std::optional<std::string_view> keyword) {
   if (!keyword) {
      return PolicyView::standard;
   }
   if (*keyword == "summary") {
      return PolicyView::summary;
   }
   if (*keyword == "detail") {
      return PolicyView::detail;
   }
   return *keyword == "errors" ? PolicyView::errors : PolicyView::counters;
}

Direction directionNamed(std::string_view keyword) {
   return keyword == "input" ? Direction::input : Direction::output;
}

bool isDirection(std::optional<std::string_view> keyword) {
   return keyword == "input" || keyword == "output";
}

template <typename Parse>
auto parsedValue(WordReader& reader, std::string_view what, Parse parse) {
   auto parsed = parse(reader.value(what));
   if (!parsed) {
      reader.rejectValue(what, parsed.reason());
   }
   return std::move(parsed).value();
}

InterfaceRequest parseInterface(WordReader& reader, std::string policyName) {
   InterfaceRequest request{std::move(policyName)};
   auto word = reader.optionalKeyword(kDirectionsOrViews);
   if (isDirection(word)) {
      request.direction = directionNamed(*word);
      word = reader.optionalKeyword(kViews);
   }
   request.view = viewNamed(word);
   return request;
}

CpuRequest parseCpu(WordReader& reader, std::string policyName) {
   return CpuRequest{std::move(policyName), viewNamed(reader.optionalKeyword(kViews))};
}

// A set's name may be left out; a word standing for "contains" starts the filter instead.
std::string optionalFieldSetName(WordReader& reader) {
   if (reader.atEnd() || reader.nextIsKeyword(kContains)) {
      return {};
   }
   return reader.value("field-set name");
}

PrefixFieldSetRequest parsePrefixFieldSet(WordReader& reader, bool ipv4) {
   reader.keyword(kPrefix);
   PrefixFieldSetRequest request{ipv4, optionalFieldSetName(reader)};
   if (reader.optionalKeyword(kContains)) {
      request.contains = parsedValue(reader, "prefix", [ipv4](std::string_view text) {
         return parsePrefixOfFamily(text, ipv4);
      });
      request.exact = reader.optionalKeyword(kExact).has_value();
   }
   return request;
}

template <typename Request, typename ParseRange>
Request parseRangeFieldSet(WordReader& reader, std::string_view what, ParseRange parseRange) {
   Request request{optionalFieldSetName(reader)};
   if (reader.optionalKeyword(kContains)) {
      request.contains = parsedValue(reader, what, parseRange);
   }
   return request;
}

ShowRequest parseFieldSet(WordReader& reader) {
   auto const type = reader.keyword(kFieldSetTypes);
   if (type == "l4-port") {
      return parseRangeFieldSet<L4PortFieldSetRequest>(reader, "port", parsePortRange);
   }
   if (type == "vlan") {
      return parseRangeFieldSet<VlanFieldSetRequest>(reader, "VLAN", parseVlanRange);
   }
   return parsePrefixFieldSet(reader, type == "ipv4");
}

ShowRequest parseShow(WordReader& reader) {
   auto target = reader.keyword(kShowTargets);
   if (target == "field-set") {
      return parseFieldSet(reader);
   }
   std::string policyName;
   if (target == "policy") {
      policyName = reader.value("policy name");
      target = reader.keyword(kAttachments);
   }
   if (target == "interface") {
      return parseInterface(reader, std::move(policyName));
   }
   return parseCpu(reader, std::move(policyName));
}

ClearCountersRequest parseClear(WordReader& reader) {
   reader.keyword(kCounters);
   auto const scope = reader.optionalKeyword(kAttachments);
   if (!scope) {
      return {};
   }
   if (*scope == "cpu") {
      return {ClearScope::cpu};
   }
   auto const direction = reader.optionalKeyword(kDirections);
   return {ClearScope::interface, direction ? directionNamed(*direction) : Direction::both};
}

Request parseRequest(WordReader& reader) {
   auto const verb = reader.keyword(kVerbs);
   reader.keyword(kTrafficPolicy);
   if (verb == "show") {
      return parseShow(reader);
   }
   return parseClear(reader);
}

// Splits off the output filter: everything from the first word that starts with "|", with
// "|json" cut into "|" and "json" so that both spellings read alike.
std::pair<std::vector<std::string>, std::vector<std::string>> splitFilter(
    std::vector<std::string> const& words) {
   auto const pipe =
       std::ranges::find_if(words, [](std::string const& word) { return word.starts_with('|'); });
   std::vector<std::string> command(words.begin(), pipe);
   std::vector<std::string> filter;
   if (pipe != words.end()) {
      filter.push_back("|");
      if (pipe->size() > 1) {
         filter.push_back(pipe->substr(1));
      }
      filter.insert(filter.end(), pipe + 1, words.end());
   }
   return {std::move(command), std::move(filter)};
}

bool parseFilter(std::vector<std::string> const& filter) {
   WordReader reader(filter);
   if (!reader.optionalKeyword(kPipe)) {
      return false;
   }
   reader.keyword(kJson);
   reader.end();
   return true;
}

}  // namespace

Kel::Expected<ParsedCommand> parseCommand(std::vector<std::string> const& words) {
   auto const [command, filter] = splitFilter(words);
   try {
      WordReader reader(command);
      auto request = parseRequest(reader);
      reader.end();
      return ParsedCommand{std::move(request), parseFilter(filter)};
   } catch (UsageError const& error) {
      return Kel::Failure{error.what()};
   }
}

}  // namespace tpcli
