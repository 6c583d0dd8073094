#include "support/ConfigText.h"

#include <ca/utils/JsonDocument.h>

#include <gtest/gtest.h>

using ca::utils::JsonDocument;
using ca::utils::JsonSpan;
using ca::utils::JsonValue;
using ca::utils::readJson;

namespace {

/// Faults as "line:column words", a line each; "ok" if there are none and the text is an object.
std::string getFaults(const std::u16string& text) {
    const JsonDocument document = readJson(text);
    std::string faults;
    for (const ca::utils::JsonFault& fault : document.faults) {
        faults += showIssue(fault.start.first, fault.start.second, *fault.message);
    }
    return faults.empty() && document.root ? "ok" : faults;
}

std::string show(const JsonSpan& span) {
    const auto& [start, end] = span;
    return std::to_string(start.first) + ':' + std::to_string(start.second) + '-' +
           std::to_string(end.first) + ':' + std::to_string(end.second);
}

/// Nested arrays in an object: as many levels as asked for.
std::u16string nest(std::size_t levels) {
    return u"{\"a\":" + std::u16string(levels - 1, u'[') + std::u16string(levels - 1, u']') + u'}';
}

struct Row {
    std::u16string text;
    std::string faults;
};

} // namespace

TEST(JsonDocument, AcceptsCommentsTrailingCommasAndAMark) {
    for (const char16_t* text :
         {u"{}", u" {\"a\": [1, 2,], } ", u"// a\n{/* \"}\" **/}//", u"\uFEFF{}", u"// a\r{}",
          u"{\"\": \"\\u0000\\ud83d\\ude00\U0001F600\\/\"}", u"/* \u0001\xD800 */{}",
          u"{\"a\": [-0, 4.0, 1e3, 1E-400, 123456789012345678901234567890]}",
          u"{\"a\": [0.0000000001e-2147483639, 1.7976931348623157e308]}"}) {
        EXPECT_EQ(getFaults(text), "ok") << showText(text);
    }
    EXPECT_EQ(getFaults(std::u16string(u"/*\0*/{}", 7)), "ok");
}

TEST(JsonDocument, PlacesSyntaxErrors) {
    const std::u16string wide = u"\"" + std::u16string(38, u'x');
    const Row rows[] = {
        {u"", "1:1 expected an object, found nothing\n"},
        {u"\uFEFF{a: 1}", "1:2 expected the name of a field in double quotes\n"},
        {u"\uFEFF \r\n\r // a\r", "4:1 expected an object, found nothing\n"},
        {u"}", "1:1 expected a value\n"},
        {u"{} {}", "1:4 nothing but comments may follow the outermost value\n"},
        {u"{}\uFEFF", "1:3 nothing but comments may follow the outermost value\n"},
        {std::u16string(u"{}\0{", 4), "1:3 nothing but comments may follow the outermost value\n"},
        {u"{\r\n\r\n  \"a\": trve}", "3:8 expected a value\n"},
        {u"{\"a\":\n,}", "2:1 expected a value\n"},
        {u"{\"a\": [1,, 2]}", "1:10 expected a value\n"},
        {u"{\"a\": -x}", "1:7 expected a value\n"},
        {u"{,}", "1:2 expected the name of a field in double quotes\n"},
        {u"{a: 1}", "1:2 expected the name of a field in double quotes\n"},
        {u"{\"a\" 1}", "1:6 expected ':' after the name of the field\n"},
        {u"{\"a\": 01}", "1:8 expected ',' or '}'\n"},
        {u"{\"a\": 1", "1:8 expected ',' or '}'\n"},
        {u"{\"a\": [1 2]}", "1:10 expected ',' or ']'\n"},
        {u"{\"a\": 1.}", "1:9 expected a digit\n"},
        {u"{\"a\": 1e+}", "1:10 expected a digit\n"},
        {u"{\"a\": 1e400}", "1:7 the number is too large\n"},
        {u"{\"a\": 0.9e309}", "1:7 the number is too large\n"},
        {u"{\"a\": \"b\n\"}", "1:9 the string is not closed on its line\n"},
        {u"{\"a\": \"b\r\n\"}", "1:9 the string is not closed on its line\n"},
        {u"{\"a\": \"b", "1:9 the string is not closed on its line\n"},
        {std::u16string(u"{\"a\": \"\0\"}", 10),
         "1:8 a control character in a string has to be written as an escape sequence\n"},
        {u"{\"a\": \"\\x\"}", "1:8 there is no such escape sequence\n"},
        {u"{\"a\": \"\\u12g4\"}", "1:8 \\u needs four hexadecimal digits\n"},
        {u"{\"a\": \"b\\udc00\"}", "1:9 half a surrogate pair is no character\n"},
        {u"{\"a\": \"b\\udfff\"}", "1:9 half a surrogate pair is no character\n"},
        {u"{\"a\": \"b\\ud800\\u0041\"}", "1:9 half a surrogate pair is no character\n"},
        {u"{\"\U0001F600\xDC00\": 1}", "1:5 half a surrogate pair is no character\n"},
        {u"{\"\xD800", "1:3 half a surrogate pair is no character\n"},
        {u"/**/{\"/*\\\\\\\"/*\": //*\n1} /* a\n*", "2:4 the comment is not closed by '*/'\n"},
        {u"{} /*/", "1:4 the comment is not closed by '*/'\n"},
        {u"{//\r\"/\"/ a", "2:4 a comment starts with '//' or '/*'\n"},
        {u"/", "1:1 a comment starts with '//' or '/*'\n"},
        {u" [1]", "1:2 expected an object, found an array\n"},
        {u"null", "1:1 expected an object, found null\n"},
        {u"false", "1:1 expected an object, found false\n"},
        {u"true", "1:1 expected an object, found true\n"},
        {u"-0.5e3", "1:1 expected an object, found -500\n"},
        {u"\"a\\n\\u001f \"", "1:1 expected an object, found \"a\uFFFD\uFFFD \"\n"},
        {wide + u"ab\"", "1:1 expected an object, found " + showText(wide) + "ab\"\n"},
        {wide + u"abc\"", "1:1 expected an object, found " + showText(wide) + "ab\u2026\"\n"},
        {wide + u"a\U0001F600\"", "1:1 expected an object, found " + showText(wide) + "a\u2026\"\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(getFaults(row.text), row.faults) << showText(row.text);
    }
}

TEST(JsonDocument, CountsTheLastOfTwoFieldsAndNamesIt) {
    const std::u16string text = u"{\"a\": 1,\n \"a\": 2, \"b\": [{\"c\": 1, \"\\u0063\": 2}]}";
    EXPECT_EQ(getFaults(text), "2:2 \"a\" is there twice; remove one of the two\n"
                               "2:25 \"c\" is there twice; remove one of the two\n");
    EXPECT_EQ(readJson(text).root->find(u"a")->value.getNumber(), 2);
    std::u16string many = u"{";
    for (int i = 0; i < 1000; ++i) {
        many += u"\"a\": 1,";
    }
    EXPECT_EQ(readJson(many + u"]").faults.size(), 100U);
}

TEST(JsonDocument, KnowsThePlaceOfEachValueAndName) {
    const std::u16string text =
        u"\uFEFF{\r \"a\" :\"x\\n\",\r\n\t\"b\":[-1.5e0,true\n,null, false],\"\U0001F600\":{\n}}";
    const JsonDocument document = readJson(text);
    ASSERT_TRUE(document.root);
    const auto& a = *document.root->find(u"a");
    EXPECT_EQ(show(*a.nameSpan) + ' ' + show(*a.value.getSpan()), "2:2-2:5 2:7-2:12");
    const auto& b = *document.root->find(u"b");
    EXPECT_EQ(show(*b.nameSpan) + ' ' + show(*b.value.getSpan()), "3:2-3:5 3:6-4:14");
    std::string elements;
    for (const JsonValue& element : b.value.getElements()) {
        elements += show(*element.getSpan()) + ' ';
    }
    EXPECT_EQ(elements, "3:7-3:13 3:14-3:18 4:2-4:6 4:8-4:13 ");
    const auto& face = *document.root->find(u"\U0001F600");
    EXPECT_EQ(show(*face.nameSpan) + ' ' + show(*face.value.getSpan()), "4:15-4:19 4:20-5:2");
}

TEST(JsonDocument, HasLimits) {
    EXPECT_EQ(getFaults(nest(256)), "ok");
    EXPECT_EQ(getFaults(nest(257)), "1:261 arrays and objects are nested deeper than 256 levels\n");
    EXPECT_EQ(getFaults(std::u16string(1000000, u'[')),
              "1:257 arrays and objects are nested deeper than 256 levels\n");
    const std::u16string spaces(ca::utils::maximalJsonSize - 2, u' ');
    EXPECT_EQ(getFaults(spaces + u"{}"), "ok");
    EXPECT_EQ(getFaults(spaces + u" {}"), "1:1 the text is longer than 16 MB\n");
}
