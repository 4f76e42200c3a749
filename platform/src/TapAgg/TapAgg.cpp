// Type descriptors of the tap-aggregation actions.
#include "Kel/Value.h"
#include "TapAgg/Actions.h"

namespace TapAgg {

Kel::TypeInfo const& TapAggActionSetAggGroup::fwkType() const {
   static Kel::TypeInfo const info("TapAgg::TapAggActionSetAggGroup", &Action::typeInfo(),
                                   {Kel::readOnly("aggGroup", &TapAggActionSetAggGroup::aggGroup),
                                    Kel::readOnly("aggIntf", &TapAggActionSetAggGroup::aggIntf)});
   return info;
}

Kel::TypeInfo const& TapAggActionStripHeaderBytes::fwkType() const {
   static Kel::TypeInfo const info(
       "TapAgg::TapAggActionStripHeaderBytes", &Action::typeInfo(),
       {Kel::readOnly("stripHeader", &TapAggActionStripHeaderBytes::stripHeader)});
   return info;
}

}  // namespace TapAgg
