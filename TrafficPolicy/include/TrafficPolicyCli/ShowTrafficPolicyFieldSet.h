// The field-set listings: show objects that list the prefix, L4-port or VLAN field sets of the
// classification configuration: all of them, one by name, or those that contain a given prefix
// or range. Unlike the policy show objects they have no caching phase; `render` writes straight
// from the configuration. This base holds what the three kinds share: the configuration, the
// name asked for, whether anything was shown, the output frame and the walk over one kind's sets.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Classification/FieldSetConfig.h"
#include "Kel/RobustWalk.h"
#include "TrafficPolicyCli/CommandOutput.h"
#include "TrafficPolicyCli/Factories.h"
#include "TrafficPolicyCli/ShowCommand.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

// Indentation of the contents of an L4-port or VLAN set under its heading.
inline constexpr std::uint32_t kFieldSetContentsIndent = 3;

class ShowTrafficPolicyFieldSetBase : public ShowCommand {
 public:
   void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override;
   // The output frame and the walk over the sets.
   virtual void renderFieldSets(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) = 0;

   Kel::Ptr<Classification::FieldSetConfig const> const& fieldSetConfig() const noexcept {
      return fieldSetConfig_;
   }
   Kel::String const& fieldSetName() const noexcept { return fieldSetName_; }
   bool foundMatches() const noexcept { return foundMatches_; }
   void foundMatchesIs(bool found) noexcept { foundMatches_ = found; }

   // The word for where a set's contents came from: "static"; "BGP" in text; otherwise the
   // enumeration's text form as of the first call that needed it, kept for the life of the
   // process. Listings have always shown that first text for every later set too, and scripts
   // that read the output depend on it, so it stays.
   static std::string_view contentsSourceShowString(Classification::ContentsSource source,
                                                    bool json);

 protected:
   // What one kind's listing says around its sets.
   struct ListingWords {
      std::string_view jsonKey;    // the top-level JSON object
      std::string_view noMatches;  // the text line when a filter matched no set
   };

   ShowTrafficPolicyFieldSetBase(Handle<Classification::FieldSetConfig> fieldSetConfig,
                                 Kel::String const& fieldSetName);

   // Renders the set named by `fieldSetName`, or every set in the collection's order, each with
   // `renderOne(renderer, name, fieldSet)`. Missing configuration lists nothing.
   template <typename SubConfig, typename RenderOne>
   void renderEachFieldSet(std::uint32_t fd, std::uint32_t fmt,
                           Classification::FieldSetMap<SubConfig> const* sets,
                           ListingWords const& words, bool filterGiven,
                           RenderOne const& renderOne) {
      // The listings have one form in every revision.
      CommandOutput output(fd, fmt, vellum::kLatestRevision, words.jsonKey);
      auto& renderer = output.renderer();
      if (sets && !fieldSetName_.empty()) {
         if (auto const* fieldSet = sets->lookup(fieldSetName_)) {
            renderOne(renderer, fieldSetName_, *fieldSet);
         }
      } else if (sets) {
         Kel::robustWalk(*sets,
                         [&renderer, &renderOne](Kel::String const& name, auto const& fieldSet) {
                            renderOne(renderer, name, fieldSet);
                         });
      }
      output.close();
      if (filterGiven && !foundMatches_ && renderer.isText()) {
         renderer.writeString(words.noMatches);
         renderer.eol();
      }
   }

   // Whether a set is shown, tracing why not: a set without a current sub-configuration, or one
   // the filter leaves out. `signature` names the calling renderFieldSet; `filterDetail` is added
   // to the trace of a filtered set. A shown set is noted in `foundMatches`.
   template <typename FieldSetPtr, typename Skip>
   bool isShown(std::string_view signature, Kel::String const& name, FieldSetPtr const& fieldSet,
                bool filterGiven, Skip const& skip, std::string_view filterDetail = {}) {
      if (!fieldSet->currCfg()) {
         TP_TRACE(8) << signature << ", fsName:" << name.view() << ", no currCfg";
         return false;
      }
      if (filterGiven && skip(fieldSet)) {
         TP_TRACE(8) << signature << ", fsName:" << name.view() << filterDetail << ", filtered";
         return false;
      }
      foundMatchesIs(true);
      return true;
   }

   // A listing's reflected attributes in constructor order: the configuration and the name, the
   // kind's own, then whether anything was shown.
   static std::vector<Kel::TypeInfo::Attribute> listingAttributes(
       std::vector<Kel::TypeInfo::Attribute> own);

 private:
   Kel::Ptr<Classification::FieldSetConfig const> fieldSetConfig_;
   Kel::String fieldSetName_;
   bool foundMatches_ = false;
};

}  // namespace TrafficPolicyCli
