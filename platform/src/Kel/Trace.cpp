// The trace registry: facilities by name, the levels asked for by name or for all ("*"), and the
// sink that trace lines go to.
#include "Kel/Trace.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace Kel {

namespace {

constexpr std::string_view kAllFacilities = "*";

struct Registry {
   std::mutex mutex;
   std::vector<TraceFacility*> facilities;
   std::map<std::string, int, std::less<>> levelByName;
   int levelForAll = kTraceLevelOff;
   TraceSink sink;
};

Registry& registry() {
   static Registry instance;
   return instance;
}

void writeToStandardError(TraceFacility const& facility, int level, std::string_view line) {
   std::fprintf(stderr, "%s/%d: %.*s\n", facility.name().c_str(), level,
                static_cast<int>(line.size()), line.data());
}

// Records a level by name and applies it to the facilities that exist; the caller holds the lock.
bool applyLevel(Registry& reg, std::string_view name, int level) {
   bool found = false;
   if (name == kAllFacilities) {
      reg.levelForAll = level;
      reg.levelByName.clear();
   } else {
      reg.levelByName.insert_or_assign(std::string(name), level);
   }
   for (auto* facility : reg.facilities) {
      if (name == kAllFacilities || facility->name() == name) {
         facility->levelIs(level);
         found = true;
      }
   }
   return found || name == kAllFacilities;
}

std::optional<int> parseLevel(std::string_view text) {
   int level = 0;
   auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), level);
   if (error != std::errc() || end != text.data() + text.size() || level < kTraceLevelOff ||
       level > kTraceLevelMax) {
      return std::nullopt;
   }
   return level;
}

std::vector<std::pair<std::string_view, int>> parseSpec(std::string_view spec, bool& valid) {
   std::vector<std::pair<std::string_view, int>> settings;
   valid = true;
   if (spec.empty()) {
      return settings;
   }
   for (bool more = true; more;) {
      auto const comma = spec.find(',');
      auto const item = spec.substr(0, comma);
      more = comma != std::string_view::npos;
      spec = more ? spec.substr(comma + 1) : std::string_view();
      auto const equals = item.find('=');
      auto const name = equals == std::string_view::npos ? kAllFacilities : item.substr(0, equals);
      auto const level =
          parseLevel(equals == std::string_view::npos ? item : item.substr(equals + 1));
      if (name.empty() || !level) {
         valid = false;
         return {};
      }
      settings.emplace_back(name, *level);
   }
   return settings;
}

void applyEnvironmentOnce(Registry& reg) {
   static bool const applied = [&reg] {
      if (char const* spec = std::getenv("KEL_TRACE")) {
         bool valid = false;
         for (auto const& [name, level] : parseSpec(spec, valid)) {
            applyLevel(reg, name, level);
         }
         if (!valid) {
            std::fprintf(stderr, "KEL_TRACE: ignoring malformed setting \"%s\"\n", spec);
         }
      }
      return true;
   }();
   (void)applied;
}

}  // namespace

TraceFacility::TraceFacility(std::string name) : name_(std::move(name)) {
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   applyEnvironmentOnce(reg);
   auto const named = reg.levelByName.find(name_);
   levelIs(named == reg.levelByName.end() ? reg.levelForAll : named->second);
   reg.facilities.push_back(this);
}

TraceFacility::~TraceFacility() {
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   std::erase(reg.facilities, this);
}

void TraceFacility::levelIs(int level) noexcept {
   maxLevel_.store(std::clamp(level, kTraceLevelOff, kTraceLevelMax), std::memory_order_relaxed);
}

bool traceLevelIs(std::string_view facilityName, int level) {
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   return applyLevel(reg, facilityName, level);
}

bool traceSpecIs(std::string_view spec) {
   bool valid = false;
   auto const settings = parseSpec(spec, valid);
   if (!valid) {
      return false;
   }
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   for (auto const& [name, level] : settings) {
      applyLevel(reg, name, level);
   }
   return true;
}

TraceSink traceSinkIs(TraceSink sink) {
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   return std::exchange(reg.sink, std::move(sink));
}

TraceLine::~TraceLine() {
   auto& reg = registry();
   std::lock_guard lock(reg.mutex);
   auto const line = text_.view();
   if (reg.sink) {
      reg.sink(facility_, level_, line);
   } else {
      writeToStandardError(facility_, level_, line);
   }
}

}  // namespace Kel
