// Walking an object's members in the text: a member's key and colon are found by hand, its value's
// end by skimming, and runs of members are parsed together. An object member too large for a
// piece is handed on unparsed, to be walked in turn.
#include "TextMembers.h"

namespace StateLoader {

namespace {

using Form = PieceParser::Form;

// Pages read are let go in steps of this many bytes, not one system call per piece.
constexpr std::size_t kReleaseStep = std::size_t{64} << 10;

// The member whose key starts at `pos`, up to the start of its value.
MemberSpan memberAt(std::string_view text, std::size_t pos) {
   if (text[pos] != '"') {
      refuseText();
   }
   auto const colon = skipBlanks(text, stringEnd(text, pos));
   if (text[colon] != ':') {
      refuseText();
   }
   return {pos, skipBlanks(text, colon + 1), TextValue::kUnknown};
}

// After a member: the position of the next one, or TextValue::kUnknown at the object's end,
// which is then recorded.
std::size_t nextMember(TextValue const& object, std::size_t end) {
   auto const text = object.state->text;
   auto const pos = skipBlanks(text, end);
   if (text[pos] == '}') {
      object.end = pos + 1;
      return TextValue::kUnknown;
   }
   if (text[pos] != ',') {
      refuseText();
   }
   return skipBlanks(text, pos + 1);
}

// The first member of an object, or TextValue::kUnknown when it is empty.
std::size_t firstMember(TextValue const& object) {
   auto const text = object.state->text;
   auto const pos = skipBlanks(text, object.begin + 1);
   if (text[pos] == '}') {
      object.end = pos + 1;
      return TextValue::kUnknown;
   }
   return pos;
}

std::string_view between(std::string_view text, std::size_t begin, std::size_t end) {
   return text.substr(begin, end - begin);
}

std::string keyOf(TextValue const& object, MemberSpan const& member) {
   auto const parsed = object.parser->parse(between(object.state->text, member.key, member.value),
                                            Form::key, object.depth);
   return std::string((*parsed.get_object().value_unsafe().begin()).key);
}

// Visits a run of members parsed as one piece.
void visitRun(TextValue const& object, std::vector<MemberSpan>& run, Where const& where,
              MemberVisitor visit, Behind behind) {
   if (run.empty()) {
      return;
   }
   auto const piece = between(object.state->text, run.front().key, run.back().end);
   auto const members =
       object.parser->parse(piece, Form::members, object.depth).get_object().value_unsafe();
   // A large piece (a long list) is in its document now; its text goes before its entities grow.
   if (behind == Behind::released && piece.size() >= kReleaseStep) {
      object.state->release(run.front().key, run.back().end);
   }
   std::size_t index = 0;
   for (auto const [key, element] : members) {
      if (index == run.size()) {
         refuseText();
      }
      TextValue const value{object.state, object.parser, run[index].value, object.depth + 1,
                            run[index].end};
      Where const at = where.member(key);
      visit(key, Node{element, at, &value});
      ++index;
   }
   if (index != run.size()) {
      refuseText();
   }
   run.clear();
   object.parser->trim();
}

// Visits a member too large to parse at once; returns the end of its value.
std::size_t visitLarge(TextValue const& object, MemberSpan const& member, Where const& where,
                       MemberVisitor visit) {
   auto const key = keyOf(object, member);
   TextValue const value{object.state, object.parser, member.value, object.depth + 1, member.end};
   Where const at = where.member(key);
   visit(key, Node{{}, at, &value, true});
   return value.end != TextValue::kUnknown
              ? value.end
              : skimValue(object.state->text, member.value, TextValue::kUnknown);
}

}  // namespace

void forEachTextMember(Node const& node, MemberVisitor visit, Behind behind) {
   TextValue const& object = *node.text;
   auto const text = object.state->text;
   auto const& limits = object.state->limits;
   std::vector<MemberSpan> run;
   std::size_t readFrom = object.begin;
   // Visits a large member at once, or adds a small one to the run; returns the end of its value.
   auto const take = [&](MemberSpan const& member) {
      TextValue const value{object.state, object.parser, member.value, object.depth + 1,
                            member.end};
      if (value.isLargeObject()) {
         visitRun(object, run, node.where, visit, behind);
         return visitLarge(object, member, node.where, visit);
      }
      run.push_back(member);
      return member.end;
   };
   auto const after = [&](std::size_t end, bool last) {
      if (last || (!run.empty() && end - run.front().key >= limits.piece)) {
         visitRun(object, run, node.where, visit, behind);
      }
      if (behind == Behind::released && run.empty() && end - readFrom >= kReleaseStep) {
         object.state->release(readFrom, end);
         readFrom = end - end % kReleaseStep;
      }
   };
   if (object.members) {
      auto const& members = *object.members;
      for (std::size_t index = 0; index < members.size(); ++index) {
         after(take(members[index]), index + 1 == members.size());
      }
      return;
   }
   for (auto pos = firstMember(object); pos != TextValue::kUnknown;) {
      auto member = memberAt(text, pos);
      member.end = skimValue(text, member.value,
                             text[member.value] == '{' ? limits.largeObject : TextValue::kUnknown);
      auto const end = take(member);
      pos = nextMember(object, end);
      after(end, pos == TextValue::kUnknown);
   }
}

std::vector<MemberSpan> gatherMembers(TextValue const& object) {
   auto const text = object.state->text;
   std::vector<MemberSpan> members;
   for (auto pos = firstMember(object); pos != TextValue::kUnknown;) {
      auto member = memberAt(text, pos);
      member.end = skimValue(text, member.value, TextValue::kUnknown);
      members.push_back(member);
      pos = nextMember(object, member.end);
   }
   return members;
}

Node nodeOf(TextValue const& value, Where const& where) {
   if (value.isLargeObject()) {
      return Node{{}, where, &value, true};
   }
   auto const piece = between(value.state->text, value.begin, value.end);
   return Node{value.parser->parse(piece, Form::value, value.depth), where, &value};
}

MemberList::MemberList(Node const& object) : object_(object), inText_(object.unparsed) {
   if (!inText_) {
      for (auto const [key, value] : asObject(object)) {
         parsed_.emplace_back(key, value);
      }
   } else if (!object.text->members) {
      next_ = firstMember(*object.text);
   }
}

bool MemberList::findWindow(std::size_t count, std::size_t bytes) {
   auto& found = found_;
   found.spans.clear();
   found.runStarts.clear();
   found.keys.clear();
   if (!inText_) {
      found.parsedBase = next_;
      next_ = std::min(parsed_.size(), next_ + count);
      found.keys.resize(next_ - found.parsedBase);
      for (std::size_t index = found.parsedBase; index < next_; ++index) {
         found.runStarts.push_back(index - found.parsedBase);
      }
      return !found.keys.empty();
   }
   TextValue const& self = *object_.text;
   if (self.members) {
      auto const& members = *self.members;
      auto const end = std::min(members.size(), next_ + count);
      found.spans.assign(members.begin() + static_cast<std::ptrdiff_t>(next_),
                         members.begin() + static_cast<std::ptrdiff_t>(end));
      next_ = end;
   } else {
      auto const text = self.state->text;
      auto const start = next_;
      while (next_ != TextValue::kUnknown && found.spans.size() < count) {
         auto member = memberAt(text, next_);
         member.end = skimValue(text, member.value, TextValue::kUnknown);
         found.spans.push_back(member);
         next_ = nextMember(self, member.end);
         if (member.end - start >= bytes) {
            break;
         }
      }
   }
   found.keys.resize(found.spans.size());
   cutIntoRuns(found);
   return !found.spans.empty();
}

bool MemberList::allFound() const noexcept {
   if (!inText_) {
      return next_ == parsed_.size();
   }
   auto const* members = object_.text->members;
   return members ? next_ == members->size() : next_ == TextValue::kUnknown;
}

// A large member is a run of its own, read member by member in turn; small ones are gathered up
// to a piece's size.
void MemberList::cutIntoRuns(Window& window) const {
   TextValue const& self = *object_.text;
   auto const& spans = window.spans;
   auto& runStarts = window.runStarts;
   bool runOpen = false;
   for (std::size_t index = 0; index < spans.size(); ++index) {
      auto const& span = spans[index];
      TextValue const value{self.state, nullptr, span.value, self.depth + 1, span.end};
      if (value.isLargeObject()) {
         runStarts.push_back(index);
         runOpen = false;
         continue;
      }
      if (!runOpen) {
         runStarts.push_back(index);
         runOpen = true;
      }
      runOpen = span.end - spans[runStarts.back()].key < self.state->limits.piece;
   }
}

std::size_t MemberList::runEnd(std::size_t run) const noexcept {
   return run + 1 < window_.runStarts.size() ? window_.runStarts[run + 1] : window_.keys.size();
}

void MemberList::visitRun(std::size_t run, PieceParser& parser, MemberVisitor visit) const {
   auto const first = window_.runStarts[run];
   if (!inText_) {
      auto const& [key, value] = parsed_[window_.parsedBase + first];
      window_.keys[first] = key;
      Where const where = object_.where.member(key);
      visit(key, Node{value, where});
      return;
   }
   TextValue const& self = *object_.text;
   auto const& head = window_.spans[first];
   TextValue const headValue{self.state, &parser, head.value, self.depth + 1, head.end};
   if (headValue.isLargeObject()) {
      // Not its end: the walk that finds the next window may be recording it.
      TextValue const object{self.state, &parser, self.begin, self.depth};
      window_.keys[first] = keyOf(object, head);
      Where const where = object_.where.member(window_.keys[first]);
      visit(window_.keys[first], Node{{}, where, &headValue, true});
      return;
   }
   auto const end = runEnd(run);
   auto const piece = between(self.state->text, head.key, window_.spans[end - 1].end);
   auto const members = parser.parse(piece, Form::members, self.depth).get_object().value_unsafe();
   auto index = first;
   for (auto const [key, element] : members) {
      if (index == end) {
         refuseText();
      }
      auto const& span = window_.spans[index];
      TextValue const value{self.state, &parser, span.value, self.depth + 1, span.end};
      window_.keys[index] = key;
      Where const where = object_.where.member(window_.keys[index]);
      visit(window_.keys[index], Node{element, where, &value});
      ++index;
   }
   if (index != end) {
      refuseText();
   }
   parser.trim();
}

void MemberList::release(std::size_t run) const noexcept {
   if (inText_) {
      object_.text->state->release(window_.spans[window_.runStarts[run]].key,
                                   window_.spans[runEnd(run) - 1].end);
   }
}

}  // namespace StateLoader
