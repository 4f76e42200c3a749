// The renderer contract: every operation in both formats, the comma rule, escaping, the raw frame.
#include <gtest/gtest.h>

#include <limits>

#include "support/CapturedAssertion.h"
#include "support/CapturedOutput.h"
#include "vellum/Renderer.h"
#include "vellum/SigIntException.h"

namespace {

using testing_support::parseJson;
using testing_support::render;
using vellum::OutputFormat_t;
using vellum::RendererV2;

Quoll::IpGenPrefix prefix(std::string_view text) {
   return Quoll::IpGenPrefix::parse(text).value();
}

struct Case {
   char const* name;
   std::function<void(RendererV2&)> calls;
   std::string text;
   std::string json;  // the whole document, including the raw "{" and "}\n" around it
};

std::vector<Case> const kCases = {
    {"writeString overloads",
     [](RendererV2& r) {
        r.writeString("lengthXXX", 6);
        r.writeString(static_cast<unsigned char>(7));
        r.writeString(" ");
        r.writeString(std::numeric_limits<unsigned long>::max());
        r.writeString(" ");
        r.writeString(prefix("2001:db8::/32"));
     },
     "length7 18446744073709551615 2001:db8::/32", "{}\n"},
    {"end of line, labels and frills",
     [](RendererV2& r) {
        r._addText("Name: ", Kel::String("p1"));
        r.addFrill(", ");
        r._addText("Kind: ", "drop");
        r.addFrill(" [");
        r._addText("Count: ", 42ul);
        r.addFrill("]");
        r.eol();
        r.eol();
     },
     "Name: p1, Kind: drop [Count: 42]\n\n", "{}\n"},
    {"key/value pairs of every type",
     [](RendererV2& r) {
        r._addJsonKeyValuePair("view", std::string_view("d"));
        r._addJsonKeyValuePair("uchar", static_cast<unsigned char>(255));
        r._addJsonKeyValuePair("ulong", std::numeric_limits<unsigned long>::max());
        r._addJsonKeyValuePair("no", false);
        r._addJsonKeyValuePair("v4", prefix("0.0.0.0/0"));
     },
     "",
     R"({"view":"d","uchar":255,"ulong":18446744073709551615,"no":false,"v4":"0.0.0.0/0"})"
     "\n"},
    {"nesting and the comma rule",
     [](RendererV2& r) {
        r._startJsonObject("trafficPolicies");
        r._startJsonObject("p1");
        r._addJsonKeyValuePair("a", 1u);
        r._startJsonList("names");
        r._addJsonKeyValuePair("", "x");
        r._addJsonKeyValuePair("", "y");
        r.endJsonList();
        r._startJsonList("rules");
        r._startJsonListEntry();
        r._addJsonKeyValuePair("low", 1u);
        r._addJsonKeyValuePair("high", 2u);
        r.endJsonDict();
        r._startJsonListEntry();
        r.endJsonDict();
        r.endJsonList();
        r._startJsonList("empty");
        r.endJsonList();
        r._startJsonObject("nothing");
        r.endJsonDict();
        r.endJsonDict();
        r._startJsonObject("p2");
        r.endJsonDict();
        r.endJsonDict();
        r._addJsonKeyValuePair("after", true);
     },
     "",
     R"({"trafficPolicies":{"p1":{"a":1,"names":["x","y"],"rules":[{"low":1,"high":2},{}],)"
     R"("empty":[],"nothing":{}},"p2":{}},"after":true})"
     "\n"},
    {"escaping of values and keys",
     [](RendererV2& r) {
        r._addJsonKeyValuePair("quote\"back\\slash", "say \"hi\" \\ there");
        r._addJsonKeyValuePair("controls", "\n\t\r\b\f\x01\x1f\x7f");
        r._addJsonKeyValuePair("utf8", "caf\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80");
        r._addJsonKeyValuePair("malformed",
                               "a\xff"
                               "b\xc3"
                               "c\xc0\xaf"
                               "d\xed\xa0\x80"
                               "e\xf4\x90\x80\x80");
     },
     "",
     R"({"quote\"back\\slash":"say \"hi\" \\ there","controls":"\n\t\r\b\f\u0001\u001f)"
     "\x7f"
     R"(","utf8":"café 日本 😀","malformed":"a\ufffdb\ufffdc\ufffd\ufffdd\ufffd\ufffd\ufffde)"
     R"(\ufffd\ufffd\ufffd\ufffd"})"
     "\n"},
    {"raw string writers",
     [](RendererV2& r) {
        r.writeJsonValue("k\"1");
        r.buffer().append(':');
        r.buffer().append('"');
        r.writeQuotedString("v\\1");
        r.buffer().append('"');
     },
     ":\"\"",
     R"({"k\"1":"v\\1"})"
     "\n"},
    {"number pairs, in one piece and with escaped keys",
     [](RendererV2& r) {
        r._startJsonList("ranges");
        r.numberPair("", "low", 1u, "high", 2u);
        r.numberPair("", "low", 0ul, "high", std::numeric_limits<unsigned long>::max());
        r.endJsonList();
        r.numberPair("range", "low", 5u, "high", 6u);
        r.numberPair("q\"", "l\n", 7u, "h", 8u);
     },
     "",
     R"({"ranges":[{"low":1,"high":2},{"low":0,"high":18446744073709551615}],)"
     R"("range":{"low":5,"high":6},"q\"":{"l\n":7,"h":8}})"
     "\n"},
    {"numbers at the edges of the in-line digits, and values beside their keys",
     [](RendererV2& r) {
        for (unsigned number : {0u, 9u, 10u, 99u, 100u, 999u, 1000u, 9999u, 10000u, 65535u}) {
           r.writeString(number);
           r.writeString(" ");
        }
        r._startJsonList("n");
        for (unsigned long number : {0ul, 9ul, 10ul, 99ul, 100ul, 1024ul, 10000ul}) {
           r._addJsonKeyValuePair("", number);
        }
        r._addJsonKeyValuePair("", true);
        r._addJsonKeyValuePair("", nullptr);
        r._addJsonKeyValuePair("", std::string(64, 'a'));
        r._addJsonKeyValuePair("", std::string(65, 'b'));
        r.endJsonList();
        r.numberPair("r", "low", 9u, "high", 100u);
        std::string const longKey(300, 'k');
        r._addJsonKeyValuePair(std::string_view(longKey), 99u);
        r._addJsonKeyValuePair("p", prefix("10.0.0.0/8"));
        r._addJsonKeyValuePair("word", vellum::JsonKey("ipv4"));
        r._addJsonKeyValuePair("quoted", vellum::JsonKey(std::string_view("a\"b")));
     },
     "0 9 10 99 100 999 1000 9999 10000 65535 ",
     "{\"n\":[0,9,10,99,100,1024,10000,true,null,\"" + std::string(64, 'a') + "\",\"" +
         std::string(65, 'b') + "\"],\"r\":{\"low\":9,\"high\":100},\"" + std::string(300, 'k') +
         "\":99,\"p\":\"10.0.0.0/8\",\"word\":\"ipv4\",\"quoted\":\"a\\\"b\"}\n"},
};

TEST(RendererContract, EveryOperationInBothFormats) {
   for (auto const& contractCase : kCases) {
      SCOPED_TRACE(contractCase.name);
      EXPECT_EQ(render(OutputFormat_t::text, contractCase.calls), contractCase.text);
      auto const document = render(OutputFormat_t::json, contractCase.calls);
      EXPECT_EQ(document, contractCase.json);
      parseJson(document);
   }
}

// Strings are checked for escaping a word at a time: a byte that needs it must be seen in every
// place of a word and of the bytes after the last whole word, in keys and in values.
TEST(RendererEscaping, EveryPlaceOfAnEscapedByteIsSeen) {
   for (char const special : {'"', '\\', '\x01', '\x1f', '\xff'}) {
      for (std::size_t length = 1; length <= 19; ++length) {
         for (std::size_t place = 0; place < length; ++place) {
            std::string text(length, ' ');
            text[place] = special;
            auto const document = render(OutputFormat_t::json, [&](RendererV2& r) {
               r._addJsonKeyValuePair(std::string_view(text), text);
            });
            auto expected = text;
            if (special == '\xff') {
               expected.replace(place, 1, "\ufffd");
            }
            EXPECT_EQ(parseJson(document).at(expected).get<std::string>(), expected) << document;
         }
      }
   }
}

// Literal keys are judged when the code is compiled, by the byte table instead of the word test.
static_assert(vellum::JsonKey("destExtL4PortFieldSet").plain());
static_assert(!vellum::JsonKey("quote\"d").plain() && !vellum::JsonKey("tab\there").plain());
static_assert(!vellum::JsonKey("long key with a backslash \\ late").plain());

TEST(RendererEscaping, LiteralKeysThatNeedEscapingAreEscaped) {
   auto const document = render(OutputFormat_t::json, [](RendererV2& r) {
      r.object("a\"b", [&] { r.numberPair("c\\d", "low", 1U, "high", 2U); });
   });
   EXPECT_EQ(document, R"({"a\"b":{"c\\d":{"low":1,"high":2}}})"
                       "\n");
   EXPECT_EQ(parseJson(document).at("a\"b").at("c\\d").at("high"), 2);
}

TEST(RendererEscaping, LongStringsCrossingTheBufferAreIntact) {
   std::string text(3 * 1048576 + 17, 'x');
   for (std::size_t i = 0; i < text.size(); i += 4099) {
      text[i] = '"';
   }
   auto const document =
       render(OutputFormat_t::json, [&](RendererV2& r) { r._addJsonKeyValuePair("long", text); });
   EXPECT_EQ(parseJson(document).at("long"), text);
}

// Debug builds follow the JSON nesting and stop at the call that breaks it; an interrupted
// document and text, which has no nesting, are left alone. Release builds keep no nesting state.
#ifndef NDEBUG
TEST(RendererNesting, EachMisnestingStopsOnItsAssertion) {
   struct Row {
      char const* name;
      OutputFormat_t format;
      std::function<void(RendererV2&)> calls;
      std::string expression;  // empty: no assertion
   };
   auto const json = OutputFormat_t::json;
   Row const rows[] = {
       {"scope helpers pair up", json,
        [](RendererV2& r) {
           r.object("o", [&] {
              r.list("l", [&] { r.listEntry([&] { r._addJsonKeyValuePair("k", 1u); }); });
           });
        },
        ""},
       {"list closed as object", json,
        [](RendererV2& r) {
           r._startJsonList("l");
           r.endJsonDict();
        },
        "inside(scope) && \"close of the wrong kind\""},
       {"object closed as list", json,
        [](RendererV2& r) {
           r._startJsonObject("o");
           r.endJsonList();
        },
        "inside(scope) && \"close of the wrong kind\""},
       {"close with nothing open", json, [](RendererV2& r) { r.endJsonDict(); },
        "depth_ != 0 && \"close without an open object or list\""},
       {"pair inside a list", json,
        [](RendererV2& r) { r.list("l", [&] { r._addJsonKeyValuePair("k", 1u); }); },
        "!inside(Scope::list) && \"key inside a list\""},
       {"keyed object inside a list", json,
        [](RendererV2& r) { r.list("l", [&] { r.object("o", [] {}); }); },
        "!inside(Scope::list) && \"key inside a list\""},
       {"bare value inside an object", json,
        [](RendererV2& r) { r.object("o", [&] { r._addJsonKeyValuePair("", 1u); }); },
        "!inside(Scope::object) && \"bare value inside an object\""},
       {"list entry inside an object", json,
        [](RendererV2& r) { r.object("o", [&] { r.listEntry([] {}); }); },
        "!inside(Scope::object) && \"bare value inside an object\""},
       {"scope left open", json, [](RendererV2& r) { r._startJsonObject("o"); },
        "depth_ == 0 && \"scope left open when the renderer ends\""},
       {"interrupted mid-document", json,
        [](RendererV2& r) {
           r._startJsonObject("o");
           throw vellum::SigIntException("interrupted");
        },
        ""},
       {"text has no nesting", OutputFormat_t::text,
        [](RendererV2& r) {
           r._startJsonList("l");
           r.endJsonDict();
           r._startJsonObject("o");
        },
        ""},
   };
   for (auto const& row : rows) {
      testing_support::MemoryFile file;
      vellum::VellumBuffer buffer(file.fd(), 4096, 1);
      EXPECT_EQ(testing_support::failedAssertion([&] {
                   try {
                      RendererV2 renderer(row.format, &buffer, true);
                      row.calls(renderer);
                   } catch (vellum::SigIntException const&) {
                   }
                }),
                row.expression)
          << row.name;
   }
}
#endif

TEST(RendererFormats, AnUnknownFormatWritesNothing) {
   auto const output = render(static_cast<OutputFormat_t>(3), [](RendererV2& r) {
      r.writeString("text");
      r.eol();
      r._startJsonObject("o");
      r._addJsonKeyValuePair("k", 1u);
      r.endJsonDict();
   });
   EXPECT_EQ(output, "");
}

}  // namespace
