// Parsing a command's words into a request, one small function per branch of the grammar, and
// the help and completion that walk the same functions up to the word being typed.
#include "tpcli/CommandGrammar.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tpcli/ValueParsers.h"

namespace tpcli {

namespace {

using namespace std::string_view_literals;

constexpr Keyword kShow{"show", "Show traffic policies or field sets"};
constexpr Keyword kClear{"clear", "Reset traffic-policy counters"};
constexpr std::array kOneShotVerbs{kShow, kClear};
constexpr std::array kShellVerbs{kShow, kClear, Keyword{"reload", "Read the state file again"},
                                 Keyword{"exit", "Leave the shell"}};
constexpr std::array kTrafficPolicy{Keyword{"traffic-policy", "Traffic policies"}};

constexpr Keyword kInterfacePolicies{"interface", "Policies applied to interfaces"};
constexpr Keyword kCpuPolicies{"cpu", "Policies applied to the CPU"};
constexpr std::array kShowTargets{Keyword{"policy", "One policy by name"}, kInterfacePolicies,
                                  kCpuPolicies, Keyword{"field-set", "Field sets"}};
constexpr std::array kAttachments{kInterfacePolicies, kCpuPolicies};

constexpr Keyword kSummary{"summary", "One line per policy and interface"};
constexpr Keyword kDetail{"detail", "Everything, with every interface listed"};
constexpr Keyword kErrors{"errors", "Installation errors"};
constexpr Keyword kCountersView{"counters", "Rule and named counters"};
constexpr std::array kViews{kSummary, kDetail, kErrors, kCountersView};
constexpr Keyword kInput{"input", "Policies applied on input"};
constexpr Keyword kOutput{"output", "Policies applied on output"};
constexpr std::array kDirections{kInput, kOutput};
constexpr std::array kDirectionsOrViews{kInput, kOutput, kSummary, kDetail, kErrors, kCountersView};

constexpr std::array kFieldSetTypes{
    Keyword{"ipv4", "IPv4 prefix field sets"}, Keyword{"ipv6", "IPv6 prefix field sets"},
    Keyword{"l4-port", "Layer 4 port field sets"}, Keyword{"vlan", "VLAN field sets"}};
constexpr std::array kPrefix{Keyword{"prefix", "Prefix field sets"}};
constexpr std::array kContains{Keyword{"contains", "Only the sets that contain a value"}};
constexpr std::array kExact{Keyword{"exact", "Only the sets that hold the prefix itself"}};
constexpr std::array kCounters{Keyword{"counters", "Rule and named counters"}};
constexpr std::array kClearScopes{Keyword{"interface", "Counters of interface policies"},
                                  Keyword{"cpu", "Counters of CPU policies"}};
constexpr Keyword kPipeKeyword{"|", "Output modifiers"};
constexpr std::array kPipe{kPipeKeyword};
constexpr std::array kJson{Keyword{"json", "JSON output"}};

constexpr ValueSlot kPolicyName{"policy name", "NAME", "Policy name", NameKind::policy};
constexpr ValueSlot kPortValue{"port", "PORT|LOW-HIGH", "Port or port range, 0 to 65535"};
constexpr ValueSlot kVlanValue{"VLAN", "VLAN|LOW-HIGH", "VLAN or VLAN range, 1 to 4095"};

constexpr ValueSlot fieldSetName(NameKind names) {
   return {"field-set name", "NAME", "Field set name", names};
}

constexpr ValueSlot prefixValue(bool ipv4) {
   return {"prefix", "PREFIX", ipv4 ? "IPv4 prefix or address"sv : "IPv6 prefix or address"sv};
}

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
auto parsedValue(WordReader& reader, ValueSlot const& slot, Parse parse) {
   auto parsed = parse(reader.value(slot));
   if (!parsed) {
      reader.rejectValue(slot.what, parsed.reason());
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
std::string optionalFieldSetName(WordReader& reader, NameKind names) {
   return reader.optionalValue(fieldSetName(names), kContains).value_or(std::string());
}

PrefixFieldSetRequest parsePrefixFieldSet(WordReader& reader, bool ipv4) {
   reader.keyword(kPrefix);
   PrefixFieldSetRequest request{
       ipv4, optionalFieldSetName(reader, ipv4 ? NameKind::ipv4FieldSet : NameKind::ipv6FieldSet)};
   if (reader.optionalKeyword(kContains)) {
      request.contains = parsedValue(reader, prefixValue(ipv4), [ipv4](std::string_view text) {
         return parsePrefixOfFamily(text, ipv4);
      });
      request.exact = reader.optionalKeyword(kExact).has_value();
   }
   return request;
}

template <typename Request, typename ParseRange>
Request parseRangeFieldSet(WordReader& reader, NameKind names, ValueSlot const& slot,
                           ParseRange parseRange) {
   Request request{optionalFieldSetName(reader, names)};
   if (reader.optionalKeyword(kContains)) {
      request.contains = parsedValue(reader, slot, parseRange);
   }
   return request;
}

ShowRequest parseFieldSet(WordReader& reader) {
   auto const type = reader.keyword(kFieldSetTypes);
   if (type == "l4-port") {
      return parseRangeFieldSet<L4PortFieldSetRequest>(reader, NameKind::l4PortFieldSet, kPortValue,
                                                       parsePortRange);
   }
   if (type == "vlan") {
      return parseRangeFieldSet<VlanFieldSetRequest>(reader, NameKind::vlanFieldSet, kVlanValue,
                                                     parseVlanRange);
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
      policyName = reader.value(kPolicyName);
      target = reader.keyword(kAttachments);
   }
   if (target == "interface") {
      return parseInterface(reader, std::move(policyName));
   }
   return parseCpu(reader, std::move(policyName));
}

ClearCountersRequest parseClear(WordReader& reader) {
   reader.keyword(kCounters);
   auto const scope = reader.optionalKeyword(kClearScopes);
   if (!scope) {
      return {};
   }
   if (*scope == "cpu") {
      return {ClearScope::cpu};
   }
   auto const direction = reader.optionalKeyword(kDirections);
   return {ClearScope::interface, direction ? directionNamed(*direction) : Direction::both};
}

Keywords verbsOf(CommandSet set) {
   switch (set) {
      case CommandSet::oneShot:
         return kOneShotVerbs;
      case CommandSet::shell:
         break;
   }
   return kShellVerbs;
}

Request parseRequest(WordReader& reader, CommandSet set) {
   auto const verb = reader.keyword(verbsOf(set));
   if (verb == "reload") {
      return SessionRequest::reload;
   }
   if (verb == "exit") {
      return SessionRequest::exit;
   }
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

bool parseFilter(WordReader& reader) {
   if (!reader.optionalKeyword(kPipe)) {
      return false;
   }
   reader.keyword(kJson);
   reader.end();
   return true;
}

// The place where the words run out. While the command itself is being typed, a place where it
// may end also takes the output filter.
Place placeAfter(std::vector<std::string> const& words, CommandSet set) {
   auto const [command, filter] = splitFilter(words);
   Place place;
   try {
      WordReader reader(command, filter.empty() ? &place : nullptr);
      parseRequest(reader, set);
      reader.end();
      WordReader filterReader(filter, &place);
      parseFilter(filterReader);
   } catch (PlaceReached const&) {
      if (filter.empty() && place.mayEnd) {
         place.keywords.push_back(kPipeKeyword);
      }
   }
   return place;
}

void addKeywords(std::vector<Choice>& choices, Place const& place, std::string_view partial) {
   for (auto const& keyword : place.keywords) {
      if (keyword.word.starts_with(partial)) {
         choices.push_back({std::string(keyword.word), keyword.help});
      }
   }
}

// The state's names where it has some that fit, else the placeholder.
void addValues(std::vector<Choice>& choices, ValueSlot const& slot, std::string_view partial,
               NameLister const& names) {
   if (slot.names != NameKind::none) {
      auto const known = names(slot.names, partial);
      for (auto const& name : known) {
         choices.push_back({name, slot.help});
      }
      if (!known.empty()) {
         return;
      }
   }
   choices.push_back({std::string(slot.placeholder), slot.help, false});
}

}  // namespace

Kel::Expected<ParsedCommand> parseCommand(std::vector<std::string> const& words, CommandSet set) {
   auto const [command, filter] = splitFilter(words);
   try {
      WordReader reader(command);
      auto request = parseRequest(reader, set);
      reader.end();
      WordReader filterReader(filter);
      return ParsedCommand{std::move(request), parseFilter(filterReader)};
   } catch (UsageError const& error) {
      return Kel::Failure{error.what()};
   }
}

Kel::Expected<std::vector<Choice>> choicesAt(std::vector<std::string> const& words,
                                             std::string_view partial, NameLister const& names,
                                             CommandSet set) {
   Place place;
   try {
      place = placeAfter(words, set);
   } catch (UsageError const& error) {
      return Kel::Failure{error.what()};
   }
   std::vector<Choice> choices;
   addKeywords(choices, place, partial);
   std::ranges::sort(choices, {}, &Choice::word);
   if (place.value) {
      addValues(choices, *place.value, partial, names);
   }
   if (place.mayEnd && partial.empty()) {
      choices.push_back({"<cr>", "Run the command", false});
   }
   return choices;
}

}  // namespace tpcli
