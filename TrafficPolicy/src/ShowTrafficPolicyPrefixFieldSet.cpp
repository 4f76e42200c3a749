// The prefix field-set listing. Each set is a two-column table, 79 wide: its prefixes in order,
// and beside each the except-prefixes that lie within it. Both lists are copied sorted first
// (giving up the activity lock as they grow), so that the except-prefixes of a prefix are one
// contiguous range found by a search that only moves forward.
//
// Several except-prefixes of one prefix are written one per line in the second column, the
// first beside the prefix and the rest below it, so that each column stays one prefix wide and
// reads straight down. A prefix without any says "None" beside it, so that every row is
// complete. In JSON every entry has its "exceptPrefixes" list, empty or not.
#include "TrafficPolicyCli/ShowTrafficPolicyPrefixFieldSet.h"

#include <algorithm>
#include <span>

#include "Kel/Assert.h"
#include "Kel/Value.h"
#include "TrafficPolicyCli/PrefixCopy.h"

namespace TrafficPolicyCli {

namespace {

using Quoll::IpGenPrefix;

constexpr std::string_view kColumnGap = "  ";

struct TableColumns {
   std::uint32_t prefix;
   std::uint32_t exceptions;
};
constexpr TableColumns kIpv4Columns{19, 58};
constexpr TableColumns kIpv6Columns{45, 32};

constexpr char const* kRenderFieldSetSignature =
    "void TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSet::renderFieldSet(vellum::RendererV2&, "
    "const Kel::String&, bool, "
    "Kel::Ptr<const Classification::FieldSet<Classification::PrefixFieldSetSubConfig> >)";

// Prefixes of one family overlap when one contains the other. Those that the filter contains
// follow it in prefix order, so the first prefix not below it tells; those that contain it are
// its own address cut to each shorter length. A few lookups answer what a walk over millions of
// prefixes would.
bool anyOverlapping(Classification::PrefixSet const& prefixes, IpGenPrefix const& filter) {
   auto const next = prefixes.firstNotLessThan(filter);
   if (next != prefixes.end() && filter.contains(*next)) {
      return true;
   }
   for (std::uint8_t length = 0; length < filter.length(); ++length) {
      if (prefixes.contains(IpGenPrefix(filter.address(), length))) {
         return true;
      }
   }
   return false;
}

// The except-prefixes from `first` on that lie within `pfx`; `first` is the first one not below
// it. They end at the first one beyond the prefix's last address.
std::span<IpGenPrefix const> exceptionsWithin(std::vector<IpGenPrefix>::const_iterator first,
                                              std::vector<IpGenPrefix>::const_iterator end,
                                              IpGenPrefix const& pfx) {
   auto const lastAddress = pfx.lastAddress();
   auto const beyond = std::find_if(first, end, [&pfx, &lastAddress](IpGenPrefix const& except) {
      return except.family() != pfx.family() || lastAddress < except.address();
   });
   return {first, beyond};
}

void renderTableHeader(vellum::RendererV2& renderer, TableColumns const& columns) {
   renderer.writeString(Strix::JustifyLeft<char const*>("Prefix", columns.prefix));
   renderer.writeString(kColumnGap);
   renderer.writeString("Exception Prefixes");
   renderer.eol();
   renderer.writeString(Strix::JustifyLeft<char const*>("", columns.prefix, '-'));
   renderer.writeString(kColumnGap);
   renderer.writeString(Strix::JustifyLeft<char const*>("", columns.exceptions, '-'));
   renderer.eol();
}

void writePaddedPrefix(vellum::RendererV2& renderer, IpGenPrefix const& pfx, std::uint32_t width) {
   char text[IpGenPrefix::kMaxTextLength + 1];
   text[pfx.format(text)] = '\0';
   renderer.writeString(Strix::JustifyLeft<char const*>(text, width));
}

// The second column and the entry's "exceptPrefixes" list.
void renderExceptPrefixes(vellum::RendererV2& renderer, std::span<IpGenPrefix const> exceptions,
                          std::uint32_t columnStart) {
   renderer.list("exceptPrefixes", [&] {
      if (exceptions.empty()) {
         renderer.writeString("None");
      }
      for (std::size_t index = 0; index < exceptions.size(); ++index) {
         if (index > 0) {
            renderer.eol();
            renderer.writeString(Strix::JustifyLeft<char const*>("", columnStart));
         }
         renderer.writeString(exceptions[index]);
         renderer._addJsonKeyValuePair("", exceptions[index]);
      }
   });
}

void renderPrefixRow(vellum::RendererV2& renderer, TableColumns const& columns,
                     IpGenPrefix const& pfx, std::span<IpGenPrefix const> exceptions) {
   renderer.listEntry([&] {
      renderer._addJsonKeyValuePair("prefix", pfx);
      if (renderer.isText()) {
         writePaddedPrefix(renderer, pfx, columns.prefix);
         renderer.writeString(kColumnGap);
      }
      renderExceptPrefixes(renderer, exceptions,
                           columns.prefix + static_cast<std::uint32_t>(kColumnGap.size()));
   });
   renderer.eol();
}

}  // namespace

ShowTrafficPolicyPrefixFieldSet::ShowTrafficPolicyPrefixFieldSet(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool ipv4, bool filterPrefix, IpGenPrefix const& prefix, bool exact)
    : ShowTrafficPolicyFieldSetBase(fieldSetConfig, fieldSetName),
      ipv4_(ipv4),
      filterPrefix_(filterPrefix),
      prefix_(prefix),
      exact_(exact) {}

Kel::TypeInfo const& ShowTrafficPolicyPrefixFieldSet::typeInfo() {
   using Self = ShowTrafficPolicyPrefixFieldSet;
   static Kel::TypeInfo const info(
       "TrafficPolicyCli::ShowTrafficPolicyPrefixFieldSet", nullptr,
       listingAttributes(
           {Kel::readOnly("ipv4", &Self::ipv4), Kel::readOnly("filterPrefix", &Self::filterPrefix),
            Kel::readOnly("prefix", &Self::prefix), Kel::readOnly("exact", &Self::exact)}));
   return info;
}

void ShowTrafficPolicyPrefixFieldSet::renderFieldSets(std::uint32_t fd, std::uint32_t fmt,
                                                      std::uint32_t) {
   auto const& config = fieldSetConfig();
   auto const* sets = !config ? nullptr
                      : ipv4_ ? &config->fieldSetIpPrefix()
                              : &config->fieldSetIpv6Prefix();
   renderEachFieldSet(
       fd, fmt, sets, {"prefixFieldSets", "No matching prefix field sets found"}, filterPrefix_,
       [this](vellum::RendererV2& renderer, Kel::String const& name, FieldSetPtr fieldSet) {
          renderFieldSet(renderer, name, ipv4_, std::move(fieldSet));
       });
}

void ShowTrafficPolicyPrefixFieldSet::renderFieldSet(vellum::RendererV2& renderer,
                                                     Kel::String const& name, bool ipv4,
                                                     FieldSetPtr fieldSet) {
   auto const skip = [this](FieldSetPtr const& set) { return skipFieldSet(set); };
   if (!isShown(kRenderFieldSetSignature, name, fieldSet, filterPrefix_, skip,
                ipv4 ? ", ipv4:1" : ", ipv4:0")) {
      return;
   }
   auto const subConfig = fieldSet->currCfg();
   if (renderer.isText()) {
      renderer.writeString("Traffic policy IPv");
      renderer.writeString(ipv4 ? "4" : "6");
      renderer._addText(" prefix field set: ", name);
      renderer.eol();
      renderer._addText("Source: ", contentsSourceShowString(subConfig->source(), false));
      renderer.eol();
      renderer.eol();
   }
   renderer.object(name.view(), [&] {
      if (renderer.isJson()) {
         renderer._addJsonKeyValuePair("source",
                                       contentsSourceShowString(subConfig->source(), true));
      }
      renderPrefixes(renderer, *subConfig, ipv4);
   });
}

bool ShowTrafficPolicyPrefixFieldSet::skipFieldSet(FieldSetPtr const& fieldSet) const {
   if (!filterPrefix_) {
      return false;
   }
   auto const subConfig = fieldSet->currCfg();
   if (!subConfig) {
      return true;
   }
   auto const& prefixes = subConfig->prefixes();
   return exact_ ? !prefixes.contains(prefix_) : !anyOverlapping(prefixes, prefix_);
}

void ShowTrafficPolicyPrefixFieldSet::renderPrefixes(
    vellum::RendererV2& renderer, Classification::PrefixFieldSetSubConfig const& subConfig,
    bool ipv4) const {
   auto const prefixes = sortedPrefixCopy(subConfig.prefixes(), kPrefixCopyMessages);
   auto const exceptions = sortedPrefixCopy(subConfig.exceptPrefixes(), kExceptPrefixCopyMessages);
   auto const& columns = ipv4 ? kIpv4Columns : kIpv6Columns;
   renderTableHeader(renderer, columns);
   renderer._startJsonList("prefixes");
   auto firstException = exceptions.begin();
   for (auto const& pfx : prefixes) {
      KEL_ASSERT(!pfx.isNullPrefix());
      if (filterPrefix_ && !matchesFilter(pfx)) {
         continue;
      }
      firstException = std::lower_bound(firstException, exceptions.end(), pfx);
      renderPrefixRow(renderer, columns, pfx,
                      exceptionsWithin(firstException, exceptions.end(), pfx));
   }
   renderer.endJsonList();
}

bool ShowTrafficPolicyPrefixFieldSet::matchesFilter(IpGenPrefix const& candidate) const {
   return exact_ ? candidate == prefix_ : candidate.overlaps(prefix_);
}

}  // namespace TrafficPolicyCli
