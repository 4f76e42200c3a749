// The out-of-line parts of the renderer: string escaping past the fast path, the nesting checks of
// debug builds and the buffered-only construction of RendererV2.
#include "vellum/Renderer.h"

#include "Kel/Assert.h"
#include "Strix/Utf8.h"

namespace vellum {

namespace {

constexpr std::string_view kReplacementCharacter = "\\ufffd";

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
         auto const length = Strix::decodeUtf8(text, i).length;
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
