// Cases in which the drafts differ, or that only the newer ones have, where schemas meet:
// references and their neighbours, anchors, and the members and elements that count as looked at.
// check.h says how to read a row.
#include "check.h"

namespace hearth::schema {
namespace {

TEST(Drafts, VoidTheNeighboursOfAReferenceOrNot) {
  check({
      {"467", R"({"properties":{"a":{"$ref":"#/definitions/s","maxLength":1}},
        "definitions":{"s":{"type":"string"}}})",
       R"([{"a":"long"}])", R"([{"a":1}])"},
      {"90", R"({"properties":{"a":{"$ref":"#/definitions/s","maxLength":1}},
        "definitions":{"s":{"type":"string"}}})",
       R"([{"a":"l"}])", R"([{"a":"long"},{"a":1}])"},
      {"467", R"({"$ref":"#/definitions/s","items":false,"properties":{"a":false},"not":{},
        "definitions":{"s":{}}})",
       R"([[1],{"a":1}])", "[]"},
      {"90", R"({"$ref":"#/$defs/s","items":false,"properties":{"a":false},"$defs":{"s":{}}})",
       R"([[],{"b":1}])", R"([[1],{"a":1}])"},
      // Even the identifier beside it: the base stays the document's, or moves.
      {"67", R"({"$id":"http://x/a","allOf":[{"$id":"http://y/","$ref":"b"}],
        "definitions":{"b":{"$id":"b","type":"string"}}})",
       R"(["s"])", "[1]"},
      {"90", R"({"$id":"http://x/a","allOf":[{"$id":"http://y/","$ref":"b"}],
        "definitions":{"b":{"$id":"b","type":"string"},"c":{"$id":"http://y/b","type":"integer"}}})",
       "[1]", R"(["s"])"},
      // No reference: a member of that name, a value.
      {"46790", R"({"properties":{"$ref":{"type":"string"}}})", R"([{"$ref":"#/a"}])",
       R"([{"$ref":1}])"},
      {"46790", R"({"enum":[{"$ref":"#/a"}]})", R"([{"$ref":"#/a"}])", "[1]"},
  });
}

TEST(Drafts, CountAsLookedAtWhatASchemaThatHeldSaw) {
  const std::string many = repeated("1,2,", 70);
  const std::string yes = "[[" + many + "1]]", no = "[[" + many + "1,3]]";
  check({
      {"90", R"({"anyOf":[{"properties":{"a":{"const":1},"b":{"const":2}},"required":["a"]},
        {"properties":{"b":true},"required":["b"]}],"unevaluatedProperties":false})",
       R"([{"a":1},{"b":2},{"a":1,"b":2}])", R"([{"a":2,"b":2},{"a":1,"b":1},{"a":1,"c":1}])"},
      {"90", R"({"oneOf":[{"properties":{"a":{"const":1},"b":{"const":2}},"required":["a"]},
        {"properties":{"b":true},"required":["b"]}],"unevaluatedProperties":false})",
       R"([{"a":1},{"b":2}])", R"([{"a":2,"b":2},{"a":1,"b":1},{"a":1,"c":1},{"a":1,"b":2}])"},
      {"90", R"({"not":{"not":{"properties":{"a":true}}},"unevaluatedProperties":false})", "[{}]",
       R"([{"a":1}])"},
      {"90", R"({"if":{"properties":{"a":{"const":1}},"required":["a"]},
        "then":{"properties":{"b":true}},"else":{"properties":{"c":true}},
        "unevaluatedProperties":false})",
       R"([{"a":1,"b":1},{"c":1},{"a":1}])", R"([{"a":1,"c":1},{"a":2},{"b":1}])"},
      {"90", R"({"if":{"properties":{"a":true}},"unevaluatedProperties":false})", R"([{"a":1}])",
       R"([{"b":1}])"},
      {"90", R"({"dependentSchemas":{"a":{"properties":{"b":true}}},"properties":{"a":true},
        "unevaluatedProperties":false})",
       R"([{"a":1,"b":1}])", R"([{"b":1}])"},
      {"90", R"({"$ref":"#/$defs/x","$defs":{"x":{"properties":{"a":true}}},
        "properties":{"b":true},"unevaluatedProperties":false})",
       R"([{"a":1,"b":1}])", R"([{"c":1}])"},
      {"90", R"({"allOf":[{"properties":{"a":true}},{"unevaluatedProperties":false}]})", "[{}]",
       R"([{"a":1}])"},
      {"90", R"({"allOf":[{"unevaluatedProperties":{"const":1}}],"unevaluatedProperties":false})",
       R"([{"a":1}])", R"([{"a":2}])"},
      {"90", R"({"allOf":[{"patternProperties":{"^a":true}}],
        "unevaluatedProperties":{"type":"string"}})",
       R"([{"ab":1,"c":"x"}])", R"([{"c":1}])"},
      {"90", R"({"allOf":[{"additionalProperties":true}],"unevaluatedProperties":false})",
       R"([{"a":1}])", "[]"},
      {"90", R"({"properties":{"a":{"properties":{"b":true}}},"unevaluatedProperties":false})",
       R"([{"a":{"b":1,"c":1}}])", R"([{"a":{},"b":1}])"},
      {"9", R"({"items":[true],"allOf":[{"items":[true,true]}],"unevaluatedItems":false})",
       "[[1,2]]", "[[1,2,3]]"},
      {"0", R"({"anyOf":[{"prefixItems":[{"const":1},true,true]},{"prefixItems":[true]}],
        "unevaluatedItems":false})",
       "[[1,2,3],[2]]", "[[2,2],[1,2,3,4]]"},
      {"0", R"({"allOf":[{"contains":{"const":1}},{"contains":{"const":2}}],
        "unevaluatedItems":false})",
       "[[1,2,1]]", "[[1,2,3]]"},
      {"0", R"({"contains":{"const":1},"minContains":0,"unevaluatedItems":false})", "[[1],[]]",
       "[[2]]"},
      {"9", R"({"if":{"contains":{"const":1}},"unevaluatedItems":false})", "[[]]", "[[1]]"},
      {"0", R"({"anyOf":[{"contains":{"const":1}}],"unevaluatedItems":{"const":2}})", yes.c_str(),
       no.c_str()},
  });
}

TEST(Drafts, HaveKeywordsOf2019) {
  check({
      {"90", R"({"$ref":"#a","$defs":{"x":{"$anchor":"a","type":"string"}}})", R"(["s"])", "[1]"},
      {"7", R"({"$ref":"#a","definitions":{"x":{"$anchor":"a"}}})", "[]", R"(["s"])"},
      {"7", R"({"$ref":"#a","definitions":{"x":{"$id":"#a","type":"string"}}})", R"(["s"])", "[1]"},
      {"90", R"({"$id":"http://x/","$ref":"b#a","$defs":{"o":{"$anchor":"a","type":"null"},
        "b":{"$id":"b","$defs":{"y":{"$anchor":"a","type":"string"}}}}})",
       R"(["s"])", "[1,null]"},
      // Without an anchor at its target it is a plain reference.
      {"9", R"({"properties":{"a":{"$recursiveRef":"#"}},"additionalProperties":false})",
       R"([{"a":{"a":{}}}])", R"([{"a":{"b":1}}])"},
      {"9", R"({"$id":"http://x/o","$recursiveAnchor":true,"maxProperties":1,"$ref":"i",
        "$defs":{"i":{"$id":"i","$recursiveAnchor":false,
        "properties":{"a":{"$recursiveRef":"#"}}}}})",
       R"([{"a":{"b":1,"c":1}}])", R"([{"a":1,"b":1}])"},
      {"9", R"({"$id":"http://x/o","$recursiveAnchor":true,"maxProperties":1,"$ref":"i",
        "$defs":{"i":{"$id":"i","$recursiveAnchor":true,
        "properties":{"a":{"$recursiveRef":"#"}}}}})",
       R"([{"a":{"a":{}}}])", R"([{"a":{"b":1,"c":1}}])"},
      {"0", R"({"$recursiveRef":"#/none"})", "[1]", "[]"},
      {"90", R"({"contains":{"const":1},"minContains":0,"maxContains":1})", "[[],[1],[2]]",
       "[[1,1]]"},
      {"90", R"({"minContains":2,"maxContains":0})", "[[1]]", "[]"},
      {"90", R"({"contentSchema":{"type":"null"},"contentMediaType":"application/json"})",
       R"(["{"])", "[]"},
  });
}

}  // namespace
}  // namespace hearth::schema
