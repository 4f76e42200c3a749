// Reflection: every attribute readable by name, scalars writable, and
// unknown names, read-only attributes and wrong types refused.
#include <gtest/gtest.h>

#include "Kel/DenseArray.h"
#include "Kel/Entity.h"
#include "Kel/OrderedMap.h"

namespace {

class Shape : public Kel::Entity {
 public:
   Kel::TypeInfo const& fwkType() const override { return typeInfo(); }
   static Kel::TypeInfo const& typeInfo() {
      static Kel::TypeInfo const info("Shape", nullptr,
                                      {Kel::readOnly("name", &Shape::name),
                                       Kel::scalar("visible", &Shape::visible, &Shape::visibleIs)});
      return info;
   }

   Kel::String name() const { return "shape"; }
   bool visible() const { return visible_; }
   void visibleIs(bool visible) { visible_ = visible; }

 private:
   bool visible_ = true;
};

class Polygon : public Shape {
 public:
   Kel::TypeInfo const& fwkType() const override {
      static Kel::TypeInfo const info(
          "Polygon", &Shape::typeInfo(),
          {Kel::scalar("corners", &Polygon::corners, &Polygon::cornersIs),
           Kel::readOnly("sides", &Polygon::sides), Kel::readOnly("angles", &Polygon::angles),
           Kel::readOnly("neighbour", &Polygon::neighbour)});
      return info;
   }

   std::uint8_t corners() const { return corners_; }
   void cornersIs(std::uint8_t corners) { corners_ = corners; }
   Kel::OrderedMap<Kel::String, bool> const& sides() const { return sides_; }
   Kel::DenseArray<std::uint32_t> const& angles() const { return angles_; }
   Kel::Ptr<Shape const> neighbour() const { return neighbour_; }

   Kel::OrderedMap<Kel::String, bool> sides_;
   Kel::DenseArray<std::uint32_t> angles_;
   Kel::Ptr<Shape const> neighbour_;

 private:
   std::uint8_t corners_ = 3;
};

TEST(Reflection, ReadsEveryKindOfAttribute) {
   auto polygon = Kel::make<Polygon>();
   polygon->sides_.insertOrAssign("left", true);
   polygon->sides_.insertOrAssign("base", false);
   polygon->angles_.set(2, 90);
   auto neighbour = Kel::make<Shape>();
   polygon->neighbour_ = neighbour;

   EXPECT_EQ(*polygon->attribute("name"), Kel::Value(Kel::String("shape")));
   EXPECT_EQ(*polygon->attribute("visible"), Kel::Value(true));
   EXPECT_EQ(*polygon->attribute("corners"), Kel::Value(std::uint64_t{3}));
   EXPECT_EQ(*polygon->attribute("sides"),
             Kel::Value(Kel::Value::Entries{{Kel::Value(Kel::String("base")), Kel::Value(false)},
                                            {Kel::Value(Kel::String("left")), Kel::Value(true)}}));
   EXPECT_EQ(*polygon->attribute("angles"),
             Kel::Value(Kel::Value::Entries{
                 {Kel::Value(std::uint64_t{2}), Kel::Value(std::uint64_t{90})}}));
   EXPECT_EQ(polygon->attribute("neighbour")->asEntity().get(), neighbour.get());
   EXPECT_FALSE(polygon->attribute("colour").has_value());
}

TEST(Reflection, WritesScalarsAndRefusesTheRest) {
   auto polygon = Kel::make<Polygon>();
   struct Row {
      char const* attribute;
      Kel::Value value;
      Kel::WriteResult expected;
   } const rows[] = {
       {"visible", Kel::Value(false), Kel::WriteResult::done},
       {"corners", Kel::Value(std::uint64_t{256}), Kel::WriteResult::wrongType},
       {"visible", Kel::Value(std::uint64_t{1}), Kel::WriteResult::wrongType},
       {"name", Kel::Value(Kel::String("x")), Kel::WriteResult::notWritable},
       {"colour", Kel::Value(true), Kel::WriteResult::unknownAttribute},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(polygon->attributeIs(row.attribute, row.value), row.expected) << row.attribute;
   }
   EXPECT_FALSE(polygon->visible());
   EXPECT_EQ(polygon->corners(), 3);
}

}  // namespace
