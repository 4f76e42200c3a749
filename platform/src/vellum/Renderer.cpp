// The out-of-line parts of the renderer: string escaping past the fast path, the nesting checks of
// debug builds and the buffered-only construction of RendererV2.
#include "vellum/Renderer.h"

#include "Kel/Assert.h"

namespace vellum {

namespace {

constexpr std::string_view kReplacementCharacter = "\\ufffd";

// Length of the well-formed UTF-8 sequence at the start of `text`, or 0 when it is malformed
// (bad lead byte, missing continuation, overlong form, surrogate or beyond U+10FFFF).
std::size_t utf8SequenceLength(std::string_view text) {
   auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
   auto continuation = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0) == 0x80; };
   unsigned char const lead = byte(0);
   if (lead >= 0xC2 && lead <= 0xDF) {
      return continuation(1) ? 2 : 0;
   }
   if (lead >= 0xE0 && lead <= 0xEF) {
      if (!continuation(1) || !continuation(2)) {
         return 0;
      }
      bool const overlong = lead == 0xE0 && byte(1) < 0xA0;
      bool const surrogate = lead == 0xED && byte(1) >= 0xA0;
      return overlong || surrogate ? 0 : 3;
   }
   if (lead >= 0xF0 && lead <= 0xF4) {
      if (!continuation(1) || !continuation(2) || !continuation(3)) {
         return 0;
      }
      bool const overlong = lead == 0xF0 && byte(1) < 0x90;
      bool const tooHigh = lead == 0xF4 && byte(1) >= 0x90;
      return overlong || tooHigh ? 0 : 4;
   }
   return 0;
}

std::string_view shortEscape(char c) {
   switch (c) {
      case '"':
         return "\\\"";
      case '\\':
         return "\\\\";
      case '\b':
         return "\\b";
      case '\f':
         return "\\f";
      case '\n':
         return "\\n";
      case '\r':
         return "\\r";
      case '\t':
         return "\\t";
      default:
         return {};
   }
}

}  // namespace

void Renderer::appendEscapedSlow(std::string_view text) {
   static constexpr char kHex[] = "0123456789abcdef";
   std::size_t i = 0;
   while (i < text.size()) {
      auto const byte = static_cast<unsigned char>(text[i]);
      if (!detail::kNeedsEscape[byte]) {
         std::size_t plain = i + 1;
         while (plain < text.size() &&
                !detail::kNeedsEscape[static_cast<unsigned char>(text[plain])]) {
            ++plain;
         }
         buffer_.append(text.substr(i, plain - i));
         i = plain;
      } else if (byte >= 0x80) {
         auto const length = utf8SequenceLength(text.substr(i));
         buffer_.append(length ? text.substr(i, length) : kReplacementCharacter);
         i += length ? length : 1;
      } else if (auto const escape = shortEscape(text[i]); !escape.empty()) {
         buffer_.append(escape);
         ++i;
      } else {
         char const control[] = {'\\', 'u', '0', '0', kHex[byte >> 4], kHex[byte & 0xF]};
         buffer_.append(std::string_view(control, sizeof control));
         ++i;
      }
   }
}

void Renderer::startEscapedKey(std::string_view key) {
   separate();
   appendQuoted(key);
   buffer_.append(':');
}

#ifndef NDEBUG
Renderer::~Renderer() noexcept(false) {
   if (std::uncaught_exceptions() == uncaughtAtStart_) {
      KEL_ASSERT(depth_ == 0 && "scope left open when the renderer ends");
   }
}

bool Renderer::inside(Scope scope) const noexcept {
   return depth_ != 0 && (((objectAt_ >> (depth_ - 1)) & 1U) != 0) == (scope == Scope::object);
}

void Renderer::opened(Scope scope) {
   KEL_ASSERT(depth_ < kMaxDepth && "nesting deeper than the renderer follows");
   std::uint64_t const bit = std::uint64_t{1} << depth_;
   objectAt_ = scope == Scope::object ? objectAt_ | bit : objectAt_ & ~bit;
   ++depth_;
}

void Renderer::closed(Scope scope) {
   KEL_ASSERT(depth_ != 0 && "close without an open object or list");
   KEL_ASSERT(inside(scope) && "close of the wrong kind");
   --depth_;
}

void Renderer::checkKey() const {
   KEL_ASSERT(!inside(Scope::list) && "key inside a list");
}

void Renderer::checkBareValue() const {
   KEL_ASSERT(!inside(Scope::object) && "bare value inside an object");
}
#endif

RendererV2::RendererV2(OutputFormat_t format, VellumBuffer* buffer, bool buffered)
    : RendererV2(outputContext(format), buffer, buffered) {}

RendererV2::RendererV2(OutputContext context, VellumBuffer* buffer, bool buffered)
    : Renderer(context, buffer) {
   KEL_ASSERT(buffered && "This class doesn't support unbuffered writing");
}

}  // namespace vellum
