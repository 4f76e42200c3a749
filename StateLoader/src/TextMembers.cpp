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
      return;
   }
   TextValue const& self = *object.text;
   spans_ = self.members ? *self.members : gatherMembers(self);
   keys_.resize(spans_.size());
}

void MemberList::visit(std::size_t index, PieceParser& parser, MemberVisitor visit) const {
   if (!inText_) {
      auto const& [key, value] = parsed_[index];
      Where const where = object_.where.member(key);
      visit(key, Node{value, where});
      return;
   }
   TextValue const& self = *object_.text;
   TextValue const object{self.state, &parser, self.begin, self.depth, self.end};
   auto const& span = spans_[index];
   TextValue const value{self.state, &parser, span.value, self.depth + 1, span.end};
   if (value.isLargeObject()) {
      keys_[index] = keyOf(object, span);
      Where const where = object_.where.member(keys_[index]);
      visit(keys_[index], Node{{}, where, &value, true});
      return;
   }
   auto const piece = between(self.state->text, span.key, span.end);
   auto const members = parser.parse(piece, Form::members, self.depth).get_object().value_unsafe();
   if (members.size() != 1) {
      refuseText();
   }
   auto const member = *members.begin();
   keys_[index] = member.key;
   Where const where = object_.where.member(keys_[index]);
   visit(keys_[index], Node{member.value, where, &value});
}

void MemberList::release(std::size_t index) const noexcept {
   if (inText_) {
      object_.text->state->release(spans_[index].key, spans_[index].end);
   }
}

std::string_view MemberList::key(std::size_t index) const noexcept {
   return !inText_ ? parsed_[index].first : std::string_view(keys_[index]);
}

}  // namespace StateLoader
