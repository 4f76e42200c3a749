// `show traffic-policy field-set ipv4|ipv6 prefix [NAME] [contains PREFIX [exact]]`: the IPv4 or
// IPv6 prefix field sets, each as a table of its prefixes with the except-prefixes that lie within
// each of them.
#pragma once

#include "Quoll/IpGenPrefix.h"
#include "TrafficPolicyCli/ShowTrafficPolicyFieldSet.h"

namespace TrafficPolicyCli {

class ShowTrafficPolicyPrefixFieldSet : public ShowTrafficPolicyFieldSetBase {
 public:
   using FieldSetPtr = Kel::Ptr<Classification::FieldSetIpPrefix const>;

   ShowTrafficPolicyPrefixFieldSet(Handle<Classification::FieldSetConfig> fieldSetConfig,
                                   Kel::String const& fieldSetName, bool ipv4, bool filterPrefix,
                                   Quoll::IpGenPrefix const& prefix, bool exact);

   static Kel::TypeInfo const& typeInfo();
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }

   void renderFieldSets(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   // The set is held by value: the lock is given up while its prefixes are copied, and the
   // configuration may drop the set meanwhile.
   void renderFieldSet(vellum::RendererV2& renderer, Kel::String const& name, bool ipv4,
                       FieldSetPtr fieldSet);
   bool skipFieldSet(FieldSetPtr const& fieldSet) const;
   void renderPrefixes(vellum::RendererV2& renderer,
                       Classification::PrefixFieldSetSubConfig const& subConfig, bool ipv4) const;

   bool ipv4() const noexcept { return ipv4_; }
   bool filterPrefix() const noexcept { return filterPrefix_; }
   Quoll::IpGenPrefix const& prefix() const noexcept { return prefix_; }
   bool exact() const noexcept { return exact_; }

 private:
   // Whether a prefix of a set answers the filter: equal to it with `exact`, else overlapping.
   bool matchesFilter(Quoll::IpGenPrefix const& candidate) const;

   bool ipv4_;
   bool filterPrefix_;
   Quoll::IpGenPrefix prefix_;
   bool exact_;
};

}  // namespace TrafficPolicyCli
