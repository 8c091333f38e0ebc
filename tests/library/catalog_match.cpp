// Catalog::matchExpression: from typed text to an expression of FTS5.
#include "catalog_test.h"

namespace brindlehum::test {
namespace {

TEST(MatchExpression, EveryWordIsAPrefixAndMinusExcludes) {
    const std::pair<std::string, std::string> table[] = {
        {"door", R"("door"*)"},
        {"Door  Slam\theavy\n", R"("Door"* AND "Slam"* AND "heavy"*)"},
        {"door -wood", R"("door"* NOT "wood"*)"},
        {"hit sub-bass -low-end", R"("hit"* AND "sub"* "bass"* NOT "low"* "end"*)"},
        {"door - \"\" -- -\"-\" wood", R"("door"* AND "wood"*)"},
        {R"("quoted words" "half)", R"("quoted words" AND "half"*)"},
        {R"(-"wet wood" door)", R"("door"* NOT "wet wood")"},
        {"a/-b", R"("ab"*)"},
        {"//--x", R"("x"*)"},
        {"rock & roll \u2013 \u2669 24/7", R"("rock"* AND "roll"* AND "24/7"*)"},
        {"AND NEAR(a) http:b ^c *", R"e("AND"* AND "NEAR(a)"* AND "http:b"* AND "^c"*)e"},
        {"wood door OR gate-big -old", R"("wood"* AND ("door"* OR "gate"* "big"*) NOT "old"*)"},
        {"OR a OR", R"("OR"* AND "a"*)"},
        {"a OR -b OR c", R"(("a"* OR "c"*) NOT "b"*)"},
        {"NAME:door -folder:old keywords:metal", R"(name : ("door"*) AND body : ("metal"*) NOT folders : ("old"*))"},
        {"name: door", R"("name:"* AND "door"*)"},
        {"t\u00FCr\u00A0auf\u3000zu\u2003", "\"t\u00FCr\"* AND \"auf\"* AND \"zu\"*"},
        {std::string("a\0b", 3), R"("a"* AND "b"*)"},
    };
    for (const auto& [query, expression] : table) { EXPECT_EQ(Catalog::matchExpression(query), expression) << query; }
    for (const char* query : {"-rain", "-rain -wind", "", " \t\n\r\v\f ", "-", "/-", "\"\""}) {
        EXPECT_EQ(Catalog::matchExpression(query), std::nullopt) << query;
    }

    // Repeated words are dropped: they would take FTS5 hours without changing the result.
    std::string long_ = "door";
    for (int i = 0; i < 10'000; ++i) { long_ += " door sub-sub -low"; }
    const std::string expression = Catalog::matchExpression(long_ + " -low-end wood").value();
    EXPECT_LT(std::ranges::count(expression.substr(0, expression.find(" NOT ")), '*'), 100);
    EXPECT_THAT(expression, testing::HasSubstr(R"( AND "wood"* NOT "low"*)"));
    EXPECT_THAT(expression, testing::HasSubstr(R"("low"* "end"*)"));
}

}  // namespace
}  // namespace brindlehum::test
