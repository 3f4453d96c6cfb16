// Cases that the official suite leaves open, or has for other drafts than those at hand, by topic.
// check.h says how to read a row.
#include "check.h"
#include "schema/format/punycode.h"

namespace hearth::schema {
namespace {

#define D4 R"("$schema":"http://json-schema.org/draft-04/schema#",)"
#define D19 R"("$schema":"https://json-schema.org/draft/2019-09/schema",)"
#define D20 R"("$schema":"https://json-schema.org/draft/2020-12/schema",)"

TEST(Validate, TellsDraftsApart) {
  check({
      {"4", R"({"type":"integer"})", "[1]", "[1.0,1.5]"},
      {"6790", R"({"type":"integer"})", "[1,1.0,1e300]", "[1.5]"},
      {"4", R"({"const":1,"contains":false,"propertyNames":false})", R"([2,[1],{"a":1}])", "[]"},
      {"6790", R"({"exclusiveMinimum":3})", "[4]", "[3]"},
      {"46", R"({"if":true,"then":false})", "[1]", "[]"},
      {"790", R"({"if":{"type":"string"},"then":{"minLength":2},"else":{"minimum":2}})",
       R"(["ab",2,null])", R"(["a",1])"},
      {"467", R"({"definitions":{"a":{}},"$ref":"#/definitions/a","type":"string"})", "[1]", "[]"},
      {"467", R"({"type":"string","minLength":-1,"$ref":"#/definitions/a","definitions":{"a":{}}})",
       "[1]", "[]"},
      {"467",
       R"({"anyOf":[{"minLength":-1,"pattern":"(","$ref":"#/definitions/a"}],"definitions":{"a":{}}})",
       R"(["a"])", "[]"},
      {"90", R"({"$defs":{"a":{}},"$ref":"#/$defs/a","type":"string"})", R"(["a"])", "[1]"},
      {"4679", R"({"items":[{"type":"string"}],"additionalItems":false})", R"([["a"],[]])",
       R"([[1],["a",1]])"},
      {"90", R"({"contains":{"const":1},"minContains":2,"maxContains":3})", "[[1,1],[1,1,1,2]]",
       "[[1],[1,1,1,1],[]]"},
      {"4679", R"({"prefixItems":[false],"additionalItems":false})", "[[1]]", "[]"},
      {"467", R"({"dependentRequired":{"a":["b"]},"minContains":2,"contains":{}})", R"([{"a":1}])",
       "[]"},
      {"90", R"({"dependentRequired":{"a":["b"]},"dependentSchemas":{"c":{"required":["d"]}}})",
       R"([{"a":1,"b":1},{"c":1,"d":1},{}])", R"([{"a":1},{"c":1}])"},
      {"46790", R"({"dependencies":{"a":["b"],"c":{"required":["d"]}}})", R"([{"a":1,"b":1}])",
       R"([{"a":1},{"c":1}])"},
      {"9", R"({"contains":{"const":1},"unevaluatedItems":false})", "[]", "[[1]]"},
      {"9", R"({"allOf":[{"items":[true]}],"items":[],"unevaluatedItems":{"type":"integer"}})",
       R"([["a",1],["a"]])", R"([["a","b"]])"},
      {"9", R"({"additionalItems":{},"items":[{"type":"integer"}],"unevaluatedItems":false})",
       R"([[1,"a"],[1]])", R"([["a"]])"},
      {"9", R"({"additionalItems":{},"unevaluatedItems":false})", "[[]]", "[[1]]"},
      {"0", R"({"contains":{"const":1},"unevaluatedItems":false})", "[[1]]", "[[1,2]]"},
      {"4679", R"({"format":"ipv4"})", R"(["1.2.3.4",7])", R"(["1.2.3","01.2.3.4"])"},
      {"0", R"({"format":"ipv4"})", R"(["x"])", "[]"},
      {"46790", R"({"format":"no such"})", R"(["x"])", "[]"},
      {"7", R"({"contentEncoding":"base64","contentMediaType":"application/json"})",
       R"(["bnVsbA=="])", R"(["bnVsbA=","e3t7"])"},
      {"4690", R"({"contentEncoding":"base64"})", R"(["="])", "[]"},
  });
}

TEST(Validate, ReadsDraftsByResource) {
  check({
      {"70", "{" D4 R"("id":"http://x/","properties":{"a":{"id":"y","exclusiveMinimum":true,
        "minimum":1}}})",
       R"([{"a":2}])", R"([{"a":1}])"},
      {"7", R"({"items":{"exclusiveMinimum":true,"minimum":1,"id":"b",)" D4 R"("type":"integer"}})",
       "[[2]]", "[[1],[2.0]]"},
      {"7", R"({"$ref":"b","$id":"http://x/a","definitions":{"b":{"$id":"http://x/b"}}})", "[]",
       "[1]"},
      {"7",
       R"({"allOf":[{"$ref":"b"}],"$id":"http://x/a","definitions":{"b":{)" D19
       R"("$id":"http://x/b","dependentRequired":{"a":["b"]}}}})",
       "[1]", R"([{"a":1}])"},
      {"9",
       R"({"$id":"http://x/r","items":{"$ref":"e"},"$defs":{"e":{"$id":"e",)" D20
       R"("prefixItems":[{"type":"integer"}],"items":false}}})",
       "[[[1],[]]]", R"([[["a"]],[[1,2]]])"},
      // Recursive and dynamic references end at the outermost resource that has the anchor.
      {"9", R"({"$id":"http://x/s","$recursiveAnchor":true,"$ref":"t","unevaluatedProperties":false,
        "$defs":{"t":{"$id":"t","$recursiveAnchor":true,
        "properties":{"d":{},"c":{"items":{"$recursiveRef":"#"}}}}}})",
       R"([{"d":1,"c":[{"d":1}]}])", R"([{"c":[{"e":1}]}])"},
      {"9", R"({"$id":"http://x/s","$ref":"t","unevaluatedProperties":false,
        "$defs":{"t":{"$id":"t","$recursiveAnchor":true,
        "properties":{"d":{},"c":{"items":{"$recursiveRef":"#"}}}}}})",
       R"([{"c":[{"e":1}]}])", R"([{"e":1}])"},
      {"9", R"({"$id":"http://x/o","$recursiveAnchor":true,"type":["object","integer"],
        "properties":{"c":{"$ref":"m"}},"$defs":{"m":{"$id":"m","properties":{"d":{"$ref":"i"}},
        "$defs":{"i":{"$id":"i","$recursiveAnchor":true,
        "properties":{"e":{"$recursiveRef":"#"}}}}}}})",
       R"([{"c":{"d":{"e":1}}}])", R"([{"c":{"d":{"e":"s"}}}])"},
      {"0", R"({"$id":"http://x/s","$dynamicAnchor":"n","$ref":"t","unevaluatedProperties":false,
        "$defs":{"t":{"$id":"t","$dynamicAnchor":"n",
        "properties":{"d":{},"c":{"items":{"$dynamicRef":"#n"}}}}}})",
       R"([{"d":1,"c":[{"d":1}]}])", R"([{"c":[{"e":1}]}])"},
      {"46790", R"({"$ref":"http://json-schema.org/draft-04/schema#"})",
       R"([{"minimum":1,"exclusiveMinimum":true}])",
       R"([{"exclusiveMinimum":true},{"not":true},1])"},
      {"46790", R"({"$ref":"http://json-schema.org/draft-06/schema#"})", R"([{"const":1},true])",
       R"([{"enum":[]},{"multipleOf":0},{"type":"x"}])"},
      {"46790", R"({"$ref":"http://json-schema.org/draft-07/schema#"})", R"([{"if":{"not":{}}}])",
       R"([{"if":{"not":1}},{"required":["a","a"]},{"pattern":"("}])"},
      {"46790",
       R"({"$ref":"http://json-schema.org/draft-07/schema#/definitions/nonNegativeInteger"})",
       "[1]", "[-1]"},
      {"790", R"({"$ref":"https://json-schema.org/draft/2019-09/schema"})",
       R"([{"$anchor":"a","items":[{"minContains":1}]}])",
       R"([{"$anchor":"#a"},{"items":[{"minContains":-1}]},{"$id":"#a"}])"},
      {"790", R"({"$ref":"https://json-schema.org/draft/2020-12/schema"})",
       R"([{"prefixItems":[{"items":true}]}])", R"([{"items":[]},{"prefixItems":[{"items":[]}]}])"},
      {"7", R"({"$ref":"https://json-schema.org/draft/2020-12/meta/validation"})",
       R"([{"items":1}])", R"([{"minimum":"x"}])"},
      // Vocabularies of a metaschema that the document brings along.
      {"0", R"({"$schema":"http://x/m","format":"ipv4","$defs":{"m":{)" D20 R"("$id":"http://x/m",
        "$vocabulary":{"https://json-schema.org/draft/2020-12/vocab/format-assertion":true}}}})",
       R"(["1.2.3.4"])", R"(["x"])"},
      {"0",
       R"({"$schema":"http://x/m","minimum":9,"properties":{"a":false},"$defs":{"m":{)" D20
       R"("$id":"http://x/m","$vocabulary":{"http://x/own":false,
        "https://json-schema.org/draft/2020-12/vocab/applicator":true}}}})",
       "[1]", R"([{"a":1}])"},
      {"0", R"({"$schema":"http://x/m","$defs":{"m":{)" D20 R"("$id":"http://x/m",
        "$vocabulary":{"http://x/own":true}}}})",
       "[]", "[1]"},
      {"9",
       R"({"$schema":"http://x/m","minimum":9,"$id":"http://x/r","$defs":{"m":{)" D19
       R"("$id":"m","$vocabulary":{"https://json-schema.org/draft/2019-09/vocab/applicator":true}},
        "e":{)" D19 R"("$id":"e","minimum":2}},"items":{"$ref":"e"},"unevaluatedItems":false})",
       "[1,[3]]", "[[1]]"},
      {"9", R"({"$id":"http://x/r","items":{"$schema":"http://x/m","$id":"e","minimum":9},
        "maximum":3,"$defs":{"m":{)" D19 R"("$id":"m",
        "$vocabulary":{"https://json-schema.org/draft/2019-09/vocab/applicator":true}}}})",
       "[[1]]", "[4]"},
  });
}

TEST(Validate, TakesNumbersByValue) {
  check({
      {"7", R"({"multipleOf":0.01})", "[0.07,19.99,1.1,4.35,0,-0.29,1e300,1000000.01]",
       "[0.075,19.995,1e-9]"},
      {"7", R"({"multipleOf":0.0001})", "[0.0075]", "[0.00751]"},
      {"7", R"({"multipleOf":1e-8})", "[12391239123,18446744073709551615]", "[1e-9]"},
      {"7", R"({"multipleOf":3})", "[18446744073709551615,9223372036854775806,-9,1.2e1]",
       "[18446744073709551614,1.5]"},
      {"7", R"({"multipleOf":5e-324})", "[1e-323]", "[]"},
      {"7", R"({"maximum":9223372036854775807})", "[9223372036854775807,-1]",
       "[9223372036854775808,9223372036854775808.0]"},
      {"7", R"({"minimum":-9223372036854775808})", "[-9223372036854775808]", "[-1e19]"},
      {"7", R"({"maximum":9007199254740992.0})", "[9007199254740992]", "[9007199254740993]"},
      {"7", R"({"maximum":18446744073709551615})", "[18446744073709551615]",
       "[18446744073709551616.0]"},
      {"7", R"({"exclusiveMaximum":1.5})", "[1,-2]", "[2,1.5]"},
      {"7", R"({"exclusiveMinimum":-1.5})", "[-1]", "[-2,-1.5]"},
      {"7", R"({"minimum":1})", "[1]", "[NaN]"},
      {"7", R"({"const":1})", "[1,1.0]", "[true,\"1\",2,1.0000001]"},
      {"7", R"({"const":9007199254740993})", "[9007199254740993]", "[9007199254740992.0]"},
      {"7", R"({"const":{"a":[1,{"b":null}],"c":0}})", R"([{"c":0.0,"a":[1.0,{"b":null}]}])",
       R"([{"c":false,"a":[1,{"b":null}]},{"c":0,"a":[1,{"d":null}]},{"c":0}])"},
      {"7", R"({"enum":[0,false,null,"",[],{}]})", R"([0,false,null,"",[],{},0.0,-0.0])",
       R"([true," ",[0],{"a":0}])"},
      {"7", R"({"minLength":2,"maxLength":2})", R"(["äö","\ud83d\ude00b","\u0000a"])",
       R"(["a","\ud83d\ude00","abc"])"},
      {"7", R"({"minLength":2.0,"maxItems":1e30})", R"(["ab"])", R"(["a"])"},
  });
}

TEST(Validate, FindsEqualElementsAmongMany) {
  std::string distinct = "[";
  for (int i = 0; i < 100'000; ++i) {
    distinct += std::to_string(i) + ",";
  }
  const JsonRef schema = parsed(R"({"uniqueItems":true})");
  EXPECT_TRUE(validate(parsed(distinct + "0.5]").get(), schema.get()));
  EXPECT_FALSE(validate(parsed(distinct + "77.0]").get(), schema.get()));
  const std::string few = R"([1,true,"1",[1],{"a":1,"b":2},{"b":2,"a":3},null,"x",[],{},1.5,[[]],)";
  EXPECT_TRUE(validate(parsed(few + "0]").get(), schema.get()));
  EXPECT_FALSE(validate(parsed(few + R"({"b":2.0,"a":1}])").get(), schema.get()));
}

TEST(Validate, MatchesPatternsAsEcmaScriptDoes) {
  check({
      {"7", R"({"pattern":"^.$"})", R"(["a","\ud83d\ude00","\u0085"])", R"(["\n","\u2028","ab"])"},
      {"7", R"({"pattern":"^[\\s\\d]$"})", R"(["\ufeff","5"])", R"(["\u0665","x"])"},
      {"7", R"({"pattern":"^[^\\S]$"})", R"(["\u2003"])", R"(["x"])"},
      {"7", R"({"pattern":"^[[:a]$"})", R"(["[",":","a"])", R"(["b"])"},
      {"7", R"({"pattern":"^[\\uD83D\\uDE00-\\u{1F64F}]$"})", R"(["\ud83d\ude01"])", R"(["a"])"},
      {"7", R"({"pattern":"^[\\ud800-\\udfffa]$"})", R"(["a"])", R"(["b"])"},
      {"7", R"({"pattern":"^\\x41\\u0042\\0?\\/\\-\\@$"})", R"(["AB/-@"])", "[]"},
      {"7", R"({"pattern":"^(?<y>a|b)\\k<y>\\1$"})", R"(["aaa","bbb"])", R"(["aba"])"},
      {"7", R"({"pattern":"^(?:(a)|b)\\1$"})", R"(["b","aa"])", R"(["a"])"},
      {"7", R"({"pattern":"^a{,2}$"})", R"(["a{,2}"])", R"(["aa"])"},
      {"7", R"({"pattern":"[]"})", "[]", R"(["","a"])"},
      {"7", R"({"pattern":"^[^]$"})", R"(["\n"])", R"([""])"},
      {"7", R"({"pattern":"(?<=\\$)\\d+(?!%)\\b"})", R"(["$12"])", R"(["12"])"},
      {"7", R"({"pattern":"(?<=ab|c)x"})", R"(["abx","cx"])", R"(["bx","x"])"},
      {"7", R"x({"pattern":"(?<!\\$)\\b5(?<!a{2}5)"})x", R"(["5","a 5"])", R"(["$5","aa5"])"},
      {"7", R"({"pattern":"(?<=a+)b"})", "[]", R"(["ab"])"},
      {"7", R"({"pattern":"^\\u{1F600}\\u{41}[\\u{61}-\\u{000000007a}]$"})",
       R"(["\ud83d\ude00Am"])", R"(["\ud83d\ude00AM","u{1F600}Am"])"},
      {"7", R"({"pattern":"\\u{d83d}|\\u{10ffff}"})", R"(["\udbff\udfff"])",
       R"(["u","\ud83d\ude00"])"},
      // Patterns that only PCRE2 knows, and broken ones.
      {"7", R"({"format":"regex"})", R"x(["a*?b??","(?<n>x)","[\\b]","\\cA","(?<=a+)b"])x",
       R"x(["a++","(?>a)","(?i)a","(*UTF)a","\\A","\\Qa","a**","(?#c)","(?P<n>x)","\\u{110000}",
        "\\c1","\\","[a","\\k1","\\2","[b-a]","\\xg","(?|a)","\\u{}","\\u{12",
        "\\u{g}","\\u{100000041}","(?<-a)"])x"},
  });
}

TEST(Validate, TakesOverlongFormsForNoCharacters) {
  check({
      {"7", "{\"pattern\":\"^[\xC0\xAF]$\"}", "[]", R"(["/"])"},
      {"7", "{\"pattern\":\"^[\xEF\xBC\xA1-\xEF\xBF\xBD]$\"}", R"(["\uff21"])", R"(["/"])"},
      {"7", "{\"pattern\":\"^[\xED\xA0\x80-\xED\xBF\xBF/]$\"}", "[]", R"(["/"])"},
      {"4679", R"({"format":"idn-email"})", "[\"\xC3\xA4@b\"]", "[\"\xC0\xAF@b\"]"},
      {"4679", R"({"format":"iri"})", "[\"a:\xC3\xA4\"]", "[\"a:\xC0\xAF\",\"a:\xC3\"]"},
      {"4679", R"({"format":"uri-template"})", "[\"\xC3\xA4{a}\"]", "[\"\xC0\xAF{a}\"]"},
  });
}

TEST(Validate, ChecksFormats) {
  check({
      {"4679", R"({"format":"duration"})", R"(["P1Y2M3DT4H5M6S","P3W"])",
       R"(["P","P1D2H","P1W2D"])"},
      {"4679", R"({"format":"ipv6"})", R"(["::","1::8:1.2.3.4"])",
       R"(["1:2:3:4:5:6:7::8","1:::2"])"},
      {"4679", R"({"format":"uri"})", R"(["a:","http://[::1]:80/?#"])",
       R"(["//a","a b:c","a:%g0"])"},
      {"4679", R"({"format":"email"})", R"(["a.b@c","\"a@\\\"b\"@[IPv6:::1]"])",
       R"(["a..b@c","@c","a@","a b@c","a@-c"])"},
      {"4679", R"({"format":"uri-template"})", R"(["{?a,b*}%41"])", R"(["{","}","{a:0}","%4"])"},
      {"4679", R"({"format":"uri"})", R"(["http://[v1.a:b]:8/","a://[VaF.~!]"])",
       R"(["a://[v.a]","a://[v1.]","a://[v1a]","a://[vg.a]","a://[v1.a/]","a://[w1.a]","a://[v1.a"])"},
      {"4679", R"({"format":"iri"})", R"(["a://ä"])", R"(["a://[v1.ä]"])"},
      {"4679", R"({"format":"relative-json-pointer"})", R"(["0","10","120#","345/a~1b","90/"])",
       R"(["01","00#","10##","10a","-1","+1","","1/~2","#"])"},
      {"4679", R"({"format":"email"})",
       R"x(["\"a b\"@c","\"a@b\"@c","\"\"@c","\"a\\\"b\"@c","\"a\\\\\"@c","\"(.,;)\"@c"])x",
       R"x(["\"a\"b\"@c","\"a@c","a\"@c","\"a\\\"@c","\"a\\\\\"b\"@c","\"a\"b@c","\"@c","\"\u0001\"@c",
        "\"\u007f\"@c","\"ä\"@c"])x"},
  });
}

TEST(Validate, KnowsScriptsAndInternationalNames) {
  if (!knowsScripts()) {
    GTEST_SKIP() << "PCRE2 is older than 10.40";
  }
  check({
      {"7", R"({"pattern":"^\\p{Script=Greek}\\p{gc=Lu}\\P{L}$"})", R"(["\u03b1A1"])",
       R"(["aA1"])"},
      {"4679", R"({"format":"idn-email"})", R"x(["\"ä b\"@ä"])x", R"x(["\"ä\"b\"@c"])x"},
      {"4679", R"({"format":"idn-hostname"})",
       R"(["münchen.de","xn--mnchen-3ya.de","XN--MNCHEN-3YA","xn--tda","中国","xn--fiqs8s","faß","xn--fa-hia",
        "ليهمابتكلموشعربي"])",
       R"(["xn--","xn--a","xn---tda","xn--mnchen-3yb!","xn--mnchen-3y","xn--a-","xn--99999999","München"])"},
      // One label from right to left makes all others be clear in their direction.
      {"4679", R"({"format":"idn-hostname"})", R"(["1a.b.ü","a1.b.אב"])",
       R"(["1a.b.אב","אב.1a.ü"])"},
  });
}

// The samples of RFC 3492.
TEST(Validate, KnowsPunycode) {
  const std::pair<const char*, const char*> rows[] = {
      {"egbpdaj6bu4bxfgehfvwxn", "ليهمابتكلموشعربي؟"},
      {"ihqwcrb4cv8a8dqg056pqjye", "他们为什么不说中文"},
      {"ihqwctvzc91f659drss3x8bo0yb", "他們爲什麽不說中文"},
      {"Proprostnemluvesky-uyb24dma41a", "Pročprostěnemluvíčesky"},
      {"4dbcagdahymbxekheh6e0a7fei0b", "למההםפשוטלאמדבריםעברית"},
      {"i1baa7eci9glrd9b2ae1bj0hfcgg6iyaf8o0a1dig0cd", "यहलोगहिन्दीक्योंनहींबोलसकतेहैं"},
      {"n8jok5ay5dzabd5bym9f0cm5685rrjetr6pdxa", "なぜみんな日本語を話してくれないのか"},
      {"b1abfaaepdrnnbgefbadotcwatmq2g4l", "почемужеонинеговорятпорусски"},
      {"PorqunopuedensimplementehablarenEspaol-fmd56a", "PorquénopuedensimplementehablarenEspañol"},
      {"TisaohkhngthchnitingVit-kjcr8268qyxafd2f1b9g", "TạisaohọkhôngthểchỉnóitiếngViệt"},
      {"3B-ww4c5e180e575a65lsy2b", "3年B組金八先生"},
      {"-with-SUPER-MONKEYS-pc58ag80a8qai00g7n9n", "安室奈美恵-with-SUPER-MONKEYS"},
      {"Hello-Another-Way--fc4qua05auwb3674vfr0b", "Hello-Another-Way-それぞれの場所"},
      {"2-u9tlzr9756bt3uc0v", "ひとつ屋根の下2"},
      {"MajiKoi5-783gue6qz075azm5e", "MajiでKoiする5秒前"},
      {"de-jg4avhby1noc0d", "パフィーdeルンバ"},
      {"d9juau41awczczp", "そのスピードで"},
      {"-> $1.00 <--", "-> $1.00 <-"},
  };
  for (const auto& [ascii, text] : rows) {
    std::string encoded, decoded;
    EXPECT_TRUE(encodePunycode(text, encoded) && encoded == ascii) << encoded;
    EXPECT_TRUE(decodePunycode(ascii, decoded) && decoded == text) << decoded;
  }
  const std::string tooLong(64, 'a');
  std::string out;
  for (const char* const bad :
       {"a-b", "é", "99999999999", "ihqwcrb4cv8a8dqg056pqjy.", tooLong.c_str(), "en32g"}) {
    EXPECT_FALSE(decodePunycode(bad, out)) << bad;
  }
  EXPECT_FALSE(encodePunycode(tooLong + "ä", out));
  EXPECT_FALSE(encodePunycode("\xC0\xAF", out));
}

}  // namespace
}  // namespace hearth::schema
