// The detailed view of a policy's rules: per rule its header line, its match criteria in a fixed
// order (VLAN tags, source and destination addresses, protocols, lengths, fragments, DSCP, TTL,
// the BGP and IP-options flags, the inner header) and then its actions.
#include "Kel/Assert.h"
#include "ListRendering.h"
#include "TrafficPolicyCli/CliMap.h"
#include "TrafficPolicyCli/MatchRenderers.h"
#include "TrafficPolicyCli/ShowTrafficPolicyBase.h"
#include "TrafficPolicyCli/Trace.h"

// The four ways of matching one direction's addresses exclude each other; configuration
// validation guarantees it. Each assertion quotes the collection that is set against the one it
// found, so that a failure names the broken combination.
#define TP_ASSERT_ONE_ADDRESS_KIND(filter, prefixes, prefixSets, lpms, lpmPrefixSets) \
   if (filter->prefixes()) {                                                          \
      KEL_ASSERT(!filter->prefixSets());                                              \
      KEL_ASSERT(!filter->lpms());                                                    \
      KEL_ASSERT(!filter->lpmPrefixSets());                                           \
   }                                                                                  \
   if (filter->prefixSets()) {                                                        \
      KEL_ASSERT(!filter->prefixes());                                                \
      KEL_ASSERT(!filter->lpms());                                                    \
      KEL_ASSERT(!filter->lpmPrefixSets());                                           \
   }                                                                                  \
   if (filter->lpms()) {                                                              \
      KEL_ASSERT(!filter->prefixes());                                                \
      KEL_ASSERT(!filter->prefixSets());                                              \
      KEL_ASSERT(!filter->lpmPrefixSets());                                           \
   }                                                                                  \
   if (filter->lpmPrefixSets()) {                                                     \
      KEL_ASSERT(!filter->prefixes());                                                \
      KEL_ASSERT(!filter->prefixSets());                                              \
      KEL_ASSERT(!filter->lpms());                                                    \
   }

// An inner header has no longest-prefix match, and literal prefixes exclude field sets.
#define TP_ASSERT_INNER_ADDRESS_KIND(sf, prefixes, prefixSets, lpms, lpmPrefixSets) \
   KEL_ASSERT(!sf->lpms());                                                         \
   KEL_ASSERT(!sf->lpmPrefixSets());                                                \
   if (sf->prefixes()) {                                                            \
      KEL_ASSERT(!sf->prefixSets());                                                \
   }                                                                                \
   if (sf->prefixSets()) {                                                          \
      KEL_ASSERT(!sf->prefixes());                                                  \
   }

namespace TrafficPolicyCli {

namespace {

using Classification::StructuredFilter;
using PolicyMap::ClassMapMatchOption;

// One direction's address criteria with the labels and JSON keys they are shown under.
struct AddressCriteria {
   Classification::PrefixSet const& prefixes;
   Classification::NameSet const& prefixSets;
   Classification::PrefixSet const& lpms;
   Classification::NameSet const& lpmPrefixSets;
   Criterion label;
   Criterion lpmLabel;
   vellum::JsonKey extPrefixSetKey;
   // Empty where the names are not listed a second time (the inner header).
   vellum::JsonKey prefixSetNamesKey;
   vellum::JsonKey lpmPrefixSetKey;
};

AddressCriteria sourcesOf(StructuredFilter const& filter) {
   return {
       filter.sources(),          filter.srcPrefixSets(), filter.sourceLpms(),
       filter.srcLpmPrefixSets(), "Source prefix",        "Source prefix (longest prefix match)",
       "srcExtPrefixSet",         "srcPrefixSets",        "srcLpmPrefixSet"};
}

AddressCriteria destinationsOf(StructuredFilter const& filter) {
   return {filter.destinations(),    filter.dstPrefixSets(),
           filter.destinationLpms(), filter.dstLpmPrefixSets(),
           "Destination prefix",     "Destination prefix (longest prefix match)",
           "destExtPrefixSet",       "destPrefixSets",
           "destLpmPrefixSet"};
}

// The inner header lists its field sets once, as objects.
AddressCriteria innerOf(AddressCriteria criteria) {
   criteria.prefixSetNamesKey = "";
   return criteria;
}

// At most one of the four kinds is set (see the assertions above).
void renderAddresses(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                     ClassMapMatchOption option, bool showFieldSetCounts, std::uint32_t indent,
                     AddressCriteria const& criteria) {
   if (criteria.prefixes) {
      renderPrefixSet(renderer, criteria.label, criteria.prefixes, indent);
   }
   if (criteria.prefixSets) {
      renderPrefixFieldSet(renderer, fieldSetState, option, criteria.label.label(),
                           criteria.extPrefixSetKey, criteria.prefixSets, showFieldSetCounts,
                           indent, true);
      if (!criteria.prefixSetNamesKey.empty()) {
         renderPrefixFieldSet(renderer, fieldSetState, option, criteria.label.label(),
                              criteria.prefixSetNamesKey, criteria.prefixSets, showFieldSetCounts,
                              indent, false);
      }
   }
   if (criteria.lpms) {
      renderPrefixSet(renderer, criteria.lpmLabel, criteria.lpms, indent);
   }
   if (criteria.lpmPrefixSets) {
      renderPrefixFieldSet(renderer, fieldSetState, option, criteria.lpmLabel.label(),
                           criteria.lpmPrefixSetKey, criteria.lpmPrefixSets, showFieldSetCounts,
                           indent, true);
   }
}

// A criterion that is a single flag: one line of text, one JSON pair.
template <typename JsonValue>
void renderFlagLine(vellum::RendererV2& renderer, std::uint32_t indent, std::string_view text,
                    vellum::JsonKey jsonKey, JsonValue jsonValue) {
   renderer.writeIndented(indent, text);
   renderer.eol();
   renderer._addJsonKeyValuePair(jsonKey, jsonValue);
}

void renderFragment(vellum::RendererV2& renderer, Classification::Fragment const& fragment,
                    std::uint32_t indent, ClassMapMatchOption option) {
   if (fragment.kind == Classification::Fragment::matchAll) {
      renderer.object("fragment", [&] {
         renderFlagLine(renderer, indent, "Fragment: all", "matchAllFragments", true);
      });
   } else if (fragment.kind == Classification::Fragment::matchOffsets && fragment.offset) {
      renderer.object("fragment", [&] {
         renderNumericalRange(renderer, "Fragment: offset", fragment.offset, indent, option);
      });
   }
}

void renderFlagCriteria(vellum::RendererV2& renderer, StructuredFilter const& filter,
                        std::uint32_t indent) {
   if (filter.matchBgpNeighbors()) {
      renderFlagLine(renderer, indent, "protocol neighbors bgp", "neighborProtocol", "bgp");
   }
   if (filter.matchBgpProtocol()) {
      renderFlagLine(renderer, indent, "protocol bgp", "matchL4Protocol", "bgp");
   }
   if (filter.matchIpOptions()) {
      renderFlagLine(renderer, indent, "IP options: all", "matchIpOptions", true);
   }
}

}  // namespace

vellum::JsonKey matchOptionWord(ClassMapMatchOption option) noexcept {
   switch (option) {
      case ClassMapMatchOption::ipv4:
         return "ipv4";
      case ClassMapMatchOption::ipv6:
         return "ipv6";
      case ClassMapMatchOption::mac:
         return "mac";
      case ClassMapMatchOption::mpls:
         return "mpls";
   }
   return "";
}

void ShowTrafficPolicyBase::renderRules(vellum::RendererV2* renderer,
                                        PolicyState::PtrConst const& policyState,
                                        std::uint32_t indent) {
   KEL_ASSERT(policyState);
   auto const innerIndent = indent + policyState->indentCountPerLevel();
   // The rules' actions and counters are found for all rules at once, not by name rule by rule;
   // the lookups go when the rules are done, an interrupt included.
   ruleLookups_.join(*policyState);
   struct ForgetLookups {
      RuleLookups& lookups;
      ~ForgetLookups() { lookups.forget(); }
   } const forgetLookups{ruleLookups_};
   for (auto const& [ruleIndex, match] : policyState->classMapConfig()) {
      auto const& ruleName = policyState->ruleName(ruleIndex);
      auto const optionWord = matchOptionWord(match->option());
      // Structured bindings are named in init-captures: clang 14 cannot capture them.
      renderer->listEntry([&, ruleIndex = ruleIndex, &match = match] {
         renderer->_addJsonKeyValuePair("ruleString", ruleName);
         renderer->_addJsonKeyValuePair("matchOption", optionWord);
         renderer->writeIndented(indent, "match ");
         renderer->writeString(ruleName);
         renderer->writeString(" ");
         renderer->writeString(optionWord.text());
         renderer->eol();
         // The first view flag asks for rules without their matches.
         if (!policyState->summary()) {
            TP_TRACE(8) << "Rendering detailed view of the rule " << ruleName.view();
            renderMatches(*renderer, *fieldSetState(), *policyState, *match, detail(), innerIndent);
         }
         renderActions(renderer, ruleName, ruleIndex, policyState, innerIndent);
      });
   }
}

void renderMatches(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                   PolicyState const& policyState, PolicyMap::ClassMapMatch const& match,
                   bool showFieldSetCounts, std::uint32_t indent) {
   TP_TRACE(8) << "void TrafficPolicyCli::renderMatches(vellum::RendererV2&, const "
                  "TrafficPolicyCli::FieldSetState&, const TrafficPolicyCli::PolicyState&, const "
                  "PolicyMap::ClassMapMatch&, bool, uint32_t)policyName:"
               << policyState.name().view();
   auto const& structuredFilter = match.structuredFilter();
   if (!structuredFilter) {
      TP_TRACE(7) << " structured filter not found";
      return;
   }
   auto const option = match.option();
   // Not a scope helper: the address assertions inside must name this function.
   renderer._startJsonObject("matches");
   if (!structuredFilter->vlanTags().empty()) {
      renderVlanTag(renderer, fieldSetState, *structuredFilter, indent, option, showFieldSetCounts);
   }
   TP_ASSERT_ONE_ADDRESS_KIND(structuredFilter, sources, srcPrefixSets, sourceLpms,
                              srcLpmPrefixSets)
   renderAddresses(renderer, fieldSetState, option, showFieldSetCounts, indent,
                   sourcesOf(*structuredFilter));
   TP_ASSERT_ONE_ADDRESS_KIND(structuredFilter, destinations, dstPrefixSets, destinationLpms,
                              dstLpmPrefixSets)
   renderAddresses(renderer, fieldSetState, option, showFieldSetCounts, indent,
                   destinationsOf(*structuredFilter));
   if (structuredFilter->proto()) {
      renderProtocol(renderer, fieldSetState, "Protocol", *structuredFilter, indent,
                     policyState.indentCountPerLevel(), option, showFieldSetCounts);
   }
   if (structuredFilter->length()) {
      renderNumericalRange(renderer, "IP length", structuredFilter->length(), indent, option);
   }
   if (structuredFilter->fragment()) {
      renderFragment(renderer, *structuredFilter->fragment(), indent, option);
   }
   if (structuredFilter->dscp()) {
      renderNumericalRange(renderer, "DSCP", structuredFilter->dscp(), indent, option);
   }
   if (structuredFilter->ttl()) {
      renderNumericalRange(renderer, "TTL", structuredFilter->ttl(), indent, option);
   }
   renderFlagCriteria(renderer, *structuredFilter, indent);
   if (auto const inner = structuredFilter->innerMatch()) {
      renderInnerMatch(renderer, indent, showFieldSetCounts, fieldSetState,
                       structuredFilter->encapField(), *inner);
   }
   renderer.endJsonDict();
}

void renderPrefixSet(vellum::RendererV2& renderer, Criterion criterion,
                     Classification::PrefixSet const& prefixes, std::uint32_t indent) {
   // The set orders its prefixes as the address library does, so it is walked as it stands.
   renderLabelledList(renderer, criterion.label(), criterion.jsonKey(), indent, prefixes,
                      [&renderer](Quoll::IpGenPrefix const& prefix) {
                         renderer.writeString(prefix);
                         renderer.eol();
                         renderer._addJsonKeyValuePair("", prefix);
                      });
}

void renderPrefixFieldSet(vellum::RendererV2& renderer, FieldSetState const& fieldSetState,
                          ClassMapMatchOption option, std::string_view label,
                          vellum::JsonKey jsonName, Classification::NameSet const& names,
                          bool showFieldSetCounts, std::uint32_t indent, bool extended) {
   if (!extended) {
      renderFieldSetNames(renderer, jsonName, names);
      return;
   }
   auto const& defined = option == ClassMapMatchOption::ipv6 ? fieldSetState.ipv6PrefixFieldSet()
                                                             : fieldSetState.ipPrefixFieldSet();
   renderFieldSetReferences(renderer, label, jsonName, indent, names, fieldSetState, defined,
                            showFieldSetCounts);
}

void renderNumericalRange(vellum::RendererV2& renderer, Criterion criterion,
                          Classification::RangeSet const& ranges, std::uint32_t indent,
                          ClassMapMatchOption option) {
   // The set orders ranges by their low, then their high end: the order they are shown in.
   renderLabelledList(renderer, criterion.label(), criterion.jsonKey(), indent, ranges,
                      [&](Classification::NumericalRange const& range) {
                         writeRangeText(renderer, range, criterion.label(), option);
                         renderer.eol();
                         writeRangeEntry(renderer, range);
                      });
}

void renderInnerMatch(vellum::RendererV2& renderer, std::uint32_t indent, bool showFieldSetCounts,
                      FieldSetState const& fieldSetState,
                      Classification::EncapsulationField const& encapsulation,
                      StructuredFilter const& inner) {
   bool const innerIpv4 = inner.addressFamily() == Quoll::AddressFamily::ipv4;
   TP_TRACE(8) << "void TrafficPolicyCli::renderInnerMatch(...) addressFamily: "
               << (innerIpv4 ? "ipv4" : "ipv6")
               << ", encapsulationType: " << static_cast<unsigned>(encapsulation.encapsulationType);
   renderer._startJsonObject("encapsulation");
   if (encapsulation.encapsulationType == Classification::EncapsulationType::gtpv1) {
      renderer._addJsonKeyValuePair("encapsulationType", "gtpv1");
   }
   renderer.endJsonDict();
   writeIndent(renderer, indent);
   renderer.writeString("Encapsulation GTPv1 inner header ");
   renderer.writeString(innerIpv4 ? "IPv4" : "IPv6");
   renderer.eol();

   renderer._startJsonObject("innerMatch");
   renderer._addJsonKeyValuePair("addressFamily", innerIpv4 ? "ipv4" : "ipv6");
   auto const* sf = &inner;
   TP_ASSERT_INNER_ADDRESS_KIND(sf, sources, srcPrefixSets, sourceLpms, srcLpmPrefixSets)
   TP_ASSERT_INNER_ADDRESS_KIND(sf, destinations, dstPrefixSets, destinationLpms, dstLpmPrefixSets)
   // The inner addresses stand a fixed two blanks in, whatever the indentation step.
   auto const innerIndent = indent + 2;
   auto const option = innerIpv4 ? ClassMapMatchOption::ipv4 : ClassMapMatchOption::ipv6;
   renderAddresses(renderer, fieldSetState, option, showFieldSetCounts, innerIndent,
                   innerOf(sourcesOf(inner)));
   renderAddresses(renderer, fieldSetState, option, showFieldSetCounts, innerIndent,
                   innerOf(destinationsOf(inner)));
   renderer.endJsonDict();
}

}  // namespace TrafficPolicyCli
