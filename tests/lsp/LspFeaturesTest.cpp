// What the server answers about documents, through messages.

#include "LspClient.h"

#include "format/Formatter.h"
#include "support/ExampleFiles.h"
#include "text/TextEncoding.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace ombrel;
using namespace ombrel::lsp;

/// Applies TextEdits as a client does, after a check of what the protocol wants of them.
std::u16string applyAnswer(const std::u16string& text, const Json& edits) {
    const LineIndex lines(text);
    std::u16string result;
    std::size_t last = 0;
    for (const Json& edit : edits) {
        const Range range = readRange(edit["range"]);
        const std::size_t begin = findOffset(text, lines, range.start, PositionEncoding::Utf16);
        const std::size_t end = findOffset(text, lines, range.end, PositionEncoding::Utf16);
        EXPECT_LE(last, begin);
        EXPECT_LE(begin, end);
        for (const std::size_t place : {begin, end}) {
            EXPECT_FALSE(place > 0 && place < text.size() && text[place - 1] == u'\r' &&
                         text[place] == u'\n');
        }
        const std::u16string after = decodeLossy(edit["newText"].get<std::string>());
        EXPECT_NE(text.substr(begin, end - begin), after);
        result += text.substr(last, begin - last) + after;
        last = end;
    }
    return result + text.substr(last);
}

std::string format(const std::string& text, const std::string& options = "{}") {
    LspClient client;
    client.folder.write(".ombrel-format.json", options);
    client.initialize();
    client.open("a.omb", text);
    const Json edits = client.ask("textDocument/formatting", "a.omb",
                                  {{"options", {{"tabSize", 8}, {"insertSpaces", false}}}});
    return edits.is_array() ? encodeLossy(applyAnswer(decodeLossy(text), edits)) : edits.dump();
}

std::string formatAsCommandLine(const std::string& text, const FileOptions& options) {
    const std::u16string source = decodeLossy(text);
    const auto result = formatText(source, options, {}, findSuppression(source));
    return result ? encodeLossy(applyEdits(source, result->edits)) : "null";
}

TEST(LspFormatting, EqualsTheCommandLineForEveryExample) {
    FileOptions tree;
    tree.engine = Engine::Tree;
    tree.formattingJson = uR"({"formatting": {"indentationEnabled": true, "trimUnnecessaryWhitespace": true,
        "lineBreakingEnabled": true, "columnLimit": 40}})";
    const std::string treeFile =
        encodeLossy(tree.formattingJson.substr(0, tree.formattingJson.size() - 1)) + R"(, "engine": "tree"})";
    for (const auto& [path, source] : readExamples()) {
        const std::string text = encodeLossy(source);
        EXPECT_EQ(format(text), formatAsCommandLine(text, {})) << path;
        EXPECT_EQ(format(text, treeFile), formatAsCommandLine(text, tree)) << path;
    }
}

TEST(LspFormatting, KeepsLineEndsMarksAndWhatCannotBeFormatted) {
    EXPECT_EQ(format("if a\r\nx\r\nend\r\n"), "if a\r\n    x\r\nend\r\n");
    EXPECT_EQ(format("if a\rx  \r\nend"), "if a\r    x\r\nend");
    EXPECT_EQ(format("if a\n % ombrel-format off\n x\nend\n"), "if a\n % ombrel-format off\n x\nend\n");
    const Json refused = Json::parse(format(std::string("x\n y\0", 5)));
    EXPECT_EQ(refused["error"]["code"], -32803);
    EXPECT_EQ(refused["error"]["message"], "2:3: not a text: NUL characters aren't allowed [nul-character]");
    EXPECT_EQ(format("if a\n", R"({"engine": "tree"})"), "null"); // the diagnostics say why
    EXPECT_EQ(Json::parse(format("x", "{\"engin\": 1}"))["error"]["code"], -32803);

    LspClient client;
    client.initialize();
    client.open("a.omb", "\uFEFF  x = 1;\n  y\n");
    const Json edits = client.ask("textDocument/formatting", "a.omb", {{"options", Json::object()}});
    EXPECT_EQ(applyAnswer(u"\uFEFF  x = 1;\n  y\n", edits), u"\uFEFFx = 1;\ny\n");
    std::string many;
    for (std::size_t i = 0; i <= 10'000; ++i) {
        many += " x\n";
    }
    client.open("many.omb", many);
    EXPECT_EQ(client.ask("textDocument/formatting", "many.omb", {{"options", Json::object()}}).size(), 1U);
}

TEST(LspFormatting, FormatsLinesOfRangesAndBeforeSavingOnlyIfAsked) {
    const std::string text = "if a\nx\ny\nend\n";
    const auto makeRange = [](int line, int character, int endLine, int endCharacter) {
        return Json{{"start", {{"line", line}, {"character", character}}},
                    {"end", {{"line", endLine}, {"character", endCharacter}}}};
    };
    LspClient client;
    client.initialize();
    client.open("a.omb", text);
    const auto ask = [&](const std::string& method, Json params) {
        params["options"] = {{"tabSize", 2}, {"insertSpaces", true}};
        return encodeLossy(
            applyAnswer(decodeLossy(text), client.ask("textDocument/" + method, "a.omb", params)));
    };
    EXPECT_EQ(ask("rangeFormatting", {{"range", makeRange(1, 0, 2, 0)}}), "if a\n  x\ny\nend\n");
    EXPECT_EQ(ask("rangeFormatting", {{"range", makeRange(1, 1, 2, 1)}}), "if a\n  x\n  y\nend\n");
    EXPECT_EQ(ask("rangeFormatting", {{"range", makeRange(3, 0, 3, 0)}}), text);
    EXPECT_EQ(ask("rangeFormatting", {{"range", makeRange(900, 0, 901, 0)}}), text);
    EXPECT_EQ(ask("rangesFormatting", {{"ranges", {makeRange(2, 0, 2, 1), makeRange(1, 0, 1, 1)}}}),
              "if a\n  x\n  y\nend\n");
    EXPECT_TRUE(client.ask("textDocument/willSaveWaitUntil", "a.omb", {{"reason", 1}}).is_null());
    client.notify("workspace/didChangeConfiguration", {{"settings", {{"ombrel", {{"formatOnSave", true}}}}}});
    EXPECT_EQ(client.ask("textDocument/willSaveWaitUntil", "a.omb", {{"reason", 1}}).size(), 2U);
    client.folder.write(".ombrel-format-ignore", "a.omb\n");
    EXPECT_EQ(ask("formatting", {}), text);
}

/// Of options: any file, then the settings, then what the editor sends with the request.
TEST(LspFormatting, TakesOptionsOfTheEditorOnlyWhereNoFileHasAny) {
    LspClient client;
    client.initialize(Json::object(), {{"options", {{"line", {{"indentSize", 3}}}}}, {"engin", "tree"}});
    EXPECT_EQ(client.findLast("window/showMessage")["message"],
              "unknown setting ombrel.engin; did you mean engine?");
    client.open("a.omb", "if a\nx\nend\n");
    const auto getIndentation = [&] {
        const Json edits = client.ask("textDocument/formatting", "a.omb",
                                      {{"options", {{"tabSize", 5}, {"insertSpaces", true}}}});
        return edits.at(0)["newText"].get<std::string>();
    };
    EXPECT_EQ(getIndentation(), "   ");
    client.notify("workspace/didChangeConfiguration", {{"settings", {{"ombrel", {{"engine", "line"}}}}}});
    EXPECT_EQ(getIndentation(), "     ");
    EXPECT_NE(client.ask("ombrel/options", "a.omb")["text"].get<std::string>().find("the editor"),
              std::string::npos);
    client.folder.write(".editorconfig", "[*]\nindent_style = tab\n");
    EXPECT_EQ(getIndentation(), "\t");
    client.folder.write(".ombrel-format.json", "{\"line\": {\"useTabs\": false}}");
    EXPECT_EQ(getIndentation(), "    ");
}

TEST(LspFormatting, IndentsWhileTyping) {
    struct Row {
        std::string typed; ///< the cursor is at `|`, after the character that was typed
        std::string result;
        std::string options = "{}";
    };
    const std::string tree =
        R"({"engine": "tree", "formatting": {"indentationEnabled": true, "indentWidth": 2}})";
    const std::vector<Row> rows = {
        {"if a\n|", "if a\n    "},
        {"if a\n  x  \n|\nend\n", "if a\n    x\n    \nend\n"},
        {"if a\n    x\n    end|", "if a\n    x\nend"},
        {"if a\r\n    x\r\n    else|\r\nend", "if a\r\n    x\r\nelse\r\nend"},
        {"if a\n    x = blend|", "if a\n    x = blend"},
        {"switch a\n        case|", "switch a\n    case"},
        {"if a\n|", "if a\n  ", tree},
        {"if a\n|", "if a\n", R"({"engine": "tree", "formatting": {"indentationEnabled": false}})"},
        {"% ombrel-format off\nif a\n|", "% ombrel-format off\nif a\n"},
    };
    for (const Row& row : rows) {
        LspClient client;
        client.folder.write(".ombrel-format.json", row.options);
        client.initialize();
        const std::size_t cursor = row.typed.find('|');
        std::string text = row.typed;
        text.erase(cursor, 1);
        client.open("a.omb", text);
        const std::u16string wide = decodeLossy(text);
        const LineIndex lines(wide);
        const Json place = writePosition(PositionFinder(wide, lines, PositionEncoding::Utf16).find(cursor));
        const Json edits = client.ask(
            "textDocument/onTypeFormatting", "a.omb",
            {{"position", place}, {"ch", text.substr(cursor - 1, 1)}, {"options", Json::object()}});
        EXPECT_EQ(encodeLossy(applyAnswer(wide, edits.is_null() ? Json::array() : edits)), row.result)
            << row.typed;
    }
}

std::string sketchRange(const Json& range) {
    std::ostringstream out;
    out << range["start"]["line"] << ':' << range["start"]["character"] << '-' << range["end"]["line"] << ':'
        << range["end"]["character"];
    return out.str();
}

std::string sketchDiagnostics(const Json& list) {
    std::string text;
    for (const Json& item : list) {
        text += sketchRange(item["range"]) + ' ' + item["code"].get<std::string>() + ": " +
                item["message"].get<std::string>();
        for (const Json& related : item.value("relatedInformation", Json::array())) {
            text += " (" + sketchRange(related["location"]["range"]) + " " +
                    related["message"].get<std::string>() + ")";
        }
        text += '\n';
    }
    return text;
}

const Json related = {{"textDocument", {{"publishDiagnostics", {{"relatedInformation", true}}}}}};

TEST(LspDiagnostics, ShowWhatIsWrongAndWhatItBelongsTo) {
    LspClient client;
    client.initialize(related);
    const auto diagnose = [&](const std::string& name, const std::string& text) {
        client.open(name, text);
        return sketchDiagnostics(client.findLast("textDocument/publishDiagnostics")["diagnostics"]);
    };
    EXPECT_EQ(diagnose("a.omb", "x = 1;\nif a\n"),
              "2:0-2:0 unclosed-block: 'if' on line 2 is not closed by 'end' (1:0-1:2 opened here)\n");
    EXPECT_EQ(diagnose("b.omb", "x = (1;\n"), "0:6-0:7 unclosed-bracket: expected ')' to close the '(' in "
                                              "column 5 before ';' (0:4-0:5 opened here)\n");
    EXPECT_EQ(diagnose("c.omb", "swicth x\ncase 1\ny\nend\n"),
              "0:0-0:6 misspelled-keyword: 'swicth' is not a keyword: did you mean 'switch'?\n");
    EXPECT_EQ(diagnose("d.omb", "x\n% ombrel-format on\n"),
              "1:0-1:18 useless-suppression: formatting isn't off here; this comment has no effect\n");
    EXPECT_EQ(
        diagnose("d2.omb", "% ombrel-format off next\nx\n% ombrel-format off next\n y\n"),
        "0:0-0:24 unneeded-suppression: formatting would change nothing here; this comment isn't needed\n");
    EXPECT_EQ(diagnose("e.omb", "function [a = end\n").substr(0, 16), "0:12-0:13 unclos");
    EXPECT_EQ(diagnose(".ombrel-format.json", "{\n  \"engin\": \"line\",\n  \"line\": {\"tabSize\": 65}\n}"),
              "1:2-1:9 unknown-option: unknown option engin; did you mean engine?\n"
              "2:22-2:24 invalid-value: expected a number from 1 to 64\n");
    client.folder.write(".editorconfig", "root = true\n[*]\nindent_size = fuor\n[*.m]\ntab_width = x\n");
    const std::string ignored = diagnose("f.omb", "x = 1;\n");
    EXPECT_EQ(ignored.substr(0, 38), "0:0-0:6 invalid-editor-config-value: /") << ignored;
    EXPECT_NE(
        ignored.find(".editorconfig:3: this indent_size is ignored: expected a number from 0 to 64, tab or "
                     "unset (2:14-2:14 this indent_size is ignored"),
        std::string::npos)
        << ignored;
    EXPECT_EQ(std::count(ignored.begin(), ignored.end(), '\n'), 1) << ignored;
    client.folder.write(".ombrel-format.json", "{\n\"engin\": 1}");
    client.notify("workspace/didChangeWatchedFiles", Json::object());
    const std::string shown =
        sketchDiagnostics(client.findLast("textDocument/publishDiagnostics")["diagnostics"]);
    EXPECT_NE(shown.find("not formatted until this options file is right"), std::string::npos) << shown;
    EXPECT_NE(shown.find("(1:0-1:0 unknown option engin"), std::string::npos) << shown;
}

TEST(LspDiagnostics, ArePulledByClientsThatCan) {
    LspClient client;
    client.initialize({{"textDocument", {{"diagnostic", Json::object()}}},
                       {"workspace", {{"diagnostics", {{"refreshSupport", true}}}}}});
    client.open("a.omb", "if a\n");
    EXPECT_TRUE(client.findLast("textDocument/publishDiagnostics").is_null());
    const Json report = client.ask("textDocument/diagnostic", "a.omb");
    EXPECT_EQ(report["kind"], "full");
    EXPECT_EQ(report["items"].size(), 1U);
    EXPECT_EQ(
        client.ask("textDocument/diagnostic", "a.omb", {{"previousResultId", report["resultId"]}})["kind"],
        "unchanged");
    client.notify("workspace/didChangeWatchedFiles", Json::object());
    EXPECT_EQ(client.sent.back()["method"], "workspace/diagnostic/refresh");
}

/// Each token as `type:text`.
std::string sketchTokens(const std::string& text, const Json& data, const Json& legend) {
    const std::u16string wide = decodeLossy(text);
    const LineIndex lines(wide);
    std::string sketch;
    Position place{0, 0};
    for (std::size_t i = 0; i < data.size(); i += 5) {
        place.character = data[i] == 0 ? place.character + data[i + 1].get<std::uint32_t>()
                                       : data[i + 1].get<std::uint32_t>();
        place.line += data[i].get<std::uint32_t>();
        const std::size_t offset = findOffset(wide, lines, place, PositionEncoding::Utf16);
        sketch += sketch.empty() ? "" : " ";
        sketch += legend["tokenTypes"][data[i + 3].get<std::size_t>()].get<std::string>() +
                  (data[i + 4] == 0 ? ":" : "!:") +
                  encodeLossy(wide.substr(offset, data[i + 2].get<std::size_t>()));
    }
    return sketch;
}

TEST(LspTokens, TellWhatNamesQuotesAndWordsAre) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"x = a' + 'a';  % why\n",
         "variable:x operator:= function:a operator:' operator:+ string:'a' comment:% why"},
        {"hold on\n!ls\n", "function:hold string:on macro:!ls"},
        {"%{\n é\n%}\ny = 0x1F;\n", "comment:%{ comment:é comment:%} variable:y operator:= number:0x1F"},
        {"function r = f(p)\n r = p.q(g(p(end)));\nend\n",
         "keyword:function variable!:r operator:= function!:f parameter!:p variable:r operator:= parameter:p "
         "operator:. "
         "property:q function:g parameter:p keyword:end keyword:end"},
        {"h = @(t) t + pkg.g(k=1);\nfor i = 1:2, end\n",
         "variable:h operator:= operator:@ parameter!:t parameter:t operator:+ namespace:pkg operator:. "
         "function:g "
         "parameter:k operator:= number:1 keyword:for variable:i operator:= number:1 operator:: number:2 "
         "keyword:end"},
        {"classdef (Sealed) C < B\nproperties\np = 1\nend\nmethods\nfunction m(o)\nend\nend\nend\n",
         "keyword:classdef modifier:Sealed class!:C operator:< class:B keyword:properties property!:p "
         "operator:= number:1 "
         "keyword:end keyword:methods keyword:function method!:m parameter!:o keyword:end keyword:end "
         "keyword:end"},
        {"if x\n", "keyword:if"}, // doesn't parse: nothing is known of names
    };
    LspClient client;
    client.initialize();
    const Json legend = client.findResponse(1)["result"]["capabilities"]["semanticTokensProvider"]["legend"];
    for (const auto& [text, tokens] : rows) {
        client.open("a.omb", text);
        EXPECT_EQ(sketchTokens(text, client.ask("textDocument/semanticTokens/full", "a.omb")["data"], legend),
                  tokens)
            << text;
    }
    client.open("a.omb", "x = 1;\ny = 2;\nz = 3;\n");
    const Json range = {{"start", {{"line", 1}, {"character", 0}}}, {"end", {{"line", 1}, {"character", 3}}}};
    EXPECT_EQ(client.ask("textDocument/semanticTokens/range", "a.omb", {{"range", range}})["data"].size(),
              10U);
}

TEST(LspTokens, SendWhatHasChanged) {
    LspClient client;
    client.initialize();
    client.open("a.omb", "x = 1;\ny = 2;\nz = 3;\n");
    const Json before = client.ask("textDocument/semanticTokens/full", "a.omb");
    client.change("a.omb", 2, Json::array({{{"text", "x = 1;\ny = 2 + 2;\nz = 3;\n"}}}));
    const Json delta = client.ask("textDocument/semanticTokens/full/delta", "a.omb",
                                  {{"previousResultId", before["resultId"]}});
    std::vector<int> numbers = before["data"];
    ASSERT_EQ(delta["edits"].size(), 1U);
    const Json& edit = delta["edits"][0];
    const auto start = numbers.begin() + edit["start"].get<std::ptrdiff_t>();
    const std::vector<int> data = edit["data"];
    EXPECT_LE(data.size(), 10U);
    numbers.insert(numbers.erase(start, start + edit["deleteCount"].get<std::ptrdiff_t>()), data.begin(),
                   data.end());
    EXPECT_EQ(Json(numbers), client.ask("textDocument/semanticTokens/full", "a.omb")["data"]);
    EXPECT_TRUE(client.ask("textDocument/semanticTokens/full/delta", "a.omb", {{"previousResultId", "?"}})
                    .contains("data"));
}

const std::string outline =
    "% one\n% two\nclassdef C\n  properties\n    p = 1\n  end\n  methods\n    function r = m(o)\n"
    "      if o\n        r = [1\n          2];\n      else\n        r = 0;\n      end\n    end\n"
    "    y = d(x)\n  end\n  enumeration\n    Red\n  end\nend\n";

TEST(LspStructure, FoldsBlocksCommentsAndBrackets) {
    LspClient client;
    client.initialize();
    const auto fold = [&](const std::string& text) {
        client.open("a.omb", text);
        std::string sketch;
        for (const Json& range : client.ask("textDocument/foldingRange", "a.omb")) {
            sketch += std::to_string(range["startLine"].get<int>()) + "-" +
                      std::to_string(range["endLine"].get<int>()) + range.value("kind", "") + " ";
        }
        return sketch;
    };
    EXPECT_EQ(fold(outline), "2-19 3-4 6-15 7-13 8-10 11-12 17-18 9-10 0-1comment ");
    EXPECT_EQ(fold("function f\nx\n\nfunction g\ny\n"), "0-1 3-4 ");
    EXPECT_EQ(fold("if a\nif b\nx\nend\n"), "1-2 ");
    EXPECT_EQ(fold("%{\na\n%}\nx\n% ombrel-format off\ny\n% ombrel-format on\n"), "0-2comment 4-6region ");
}

TEST(LspStructure, ListsFunctionsClassesAndMembers) {
    LspClient client;
    client.initialize(
        {{"textDocument", {{"documentSymbol", {{"hierarchicalDocumentSymbolSupport", true}}}}}});
    const std::function<std::string(const Json&)> sketch = [&](const Json& list) {
        std::string text;
        for (const Json& item : list) {
            text += item["name"].get<std::string>() + "/" + item["kind"].dump() + " " +
                    sketchRange(item["range"]) + " " + sketchRange(item["selectionRange"]) +
                    (item.contains("children") ? " [" + sketch(item["children"]) + "]" : "") + "; ";
        }
        return text;
    };
    client.open("a.omb", outline);
    EXPECT_EQ(sketch(client.ask("textDocument/documentSymbol", "a.omb")),
              "C/5 2:0-20:3 2:9-2:10 [p/7 4:4-4:9 4:4-4:5; m/6 7:4-14:7 7:17-7:18; d/6 15:4-15:12 15:8-15:9; "
              "Red/22 18:4-18:7 18:4-18:7; ]; ");
    client.open("b.omb", "function a\nfunction [p, q] = b(x)\nif x\nclassdef (A) D < E\n");
    EXPECT_EQ(sketch(client.ask("textDocument/documentSymbol", "b.omb")).substr(0, 60),
              "a/12 0:0-0:10 0:9-0:10; b/12 1:0-3:18 1:18-1:19; D/5 3:0-3:1");
}

TEST(LspActions, RepairWhatIsCertain) {
    LspClient client;
    client.initialize({{"textDocument", {{"codeAction", {{"codeActionLiteralSupport", Json::object()}}}}}});
    const auto repair = [&](const std::string& name, const std::string& text) {
        client.open(name, text);
        const Json everywhere = {{"start", {{"line", 0}, {"character", 0}}},
                                 {"end", {{"line", 99}, {"character", 0}}}};
        const Json context = {
            {"diagnostics", client.findLast("textDocument/publishDiagnostics")["diagnostics"]}};
        const Json actions =
            client.ask("textDocument/codeAction", name, {{"range", everywhere}, {"context", context}});
        if (actions.empty()) {
            return std::string("no action");
        }
        EXPECT_EQ(actions[0]["diagnostics"].size(), 1U) << actions;
        return encodeLossy(
            applyAnswer(decodeLossy(text), actions[0]["edit"]["changes"][client.getUri(name)]));
    };
    EXPECT_EQ(repair("a.omb", "while b\r\n  if a\r\n    x\r\n  y\r\nend\r\n"),
              "while b\r\n  if a\r\n    x\r\n  end\r\n  y\r\nend\r\n");
    EXPECT_EQ(repair("a.omb", "while a\n x"), "while a\n x\nend\n");
    EXPECT_EQ(repair("a.omb", "swicth x\ncase 1\nend\n"), "switch x\ncase 1\nend\n");
    EXPECT_EQ(repair("a.omb", "plot(x,\n 'r')\n"), "plot(x, ...\n 'r')\n");
    EXPECT_EQ(repair("a.omb", "x = ;\n"), "no action");
    EXPECT_EQ(repair(".ombrel-format.json", "{\"engin\": \"line\"}"), "{\"engine\": \"line\"}");
    EXPECT_EQ(repair(".ombrel-format.json", "{\"engine\": \"lin\"}"), "{\"engine\": \"line\"}");
    EXPECT_EQ(repair(".ombrel-format.json", "{\"tabSize\": 2}"), "no action"); // belongs into "line"
}

TEST(LspOptionsFiles, AreCompletedAndExplained) {
    LspClient client;
    client.initialize();
    const auto ask = [&](const std::string& method, std::string text) {
        const std::size_t cursor = text.find('|');
        text.erase(cursor, 1);
        client.open(".ombrel-format.json", text);
        return client.ask("textDocument/" + method, ".ombrel-format.json",
                          {{"position", {{"line", 0}, {"character", cursor}}}});
    };
    const auto complete = [&](const std::string& text) {
        std::string labels;
        const Json items = ask("completion", text);
        for (const Json& item : items) {
            labels += item["label"].get<std::string>() + " ";
        }
        return labels;
    };
    EXPECT_EQ(complete("{|"),
              R"("$schema" "requiredVersion" "root" "extends" "overrides" "line" "formatting" "engine" )");
    EXPECT_TRUE(complete(R"({"requiredVersion": |})").starts_with("\"^"));
    EXPECT_EQ(complete(R"({"line": {"indentSize": 2, "|)"),
              R"("indentSize" "tabSize" "useTabs" "functionStyle" "blankLines" )");
    EXPECT_EQ(complete(R"({/*"*/ "engine": |})"), R"("line" "tree" )");
    EXPECT_EQ(complete(R"({"overrides": [{"files": "a", "l|")"), R"("files" "line" "formatting" "engine" )");
    EXPECT_EQ(complete(R"({"overrides": [{"line": {"useTabs": t|)"), "true false ");
    EXPECT_EQ(complete(R"({"formatting": {"lineBreakBehavior": {"Lists": {"|)"),
              R"("ParenthesisList" "BracketList" "BraceList" )");
    EXPECT_EQ(complete(R"({"formatting": {"lineBreakBehavior": {"Inheritance": "|)"),
              R"("SeparateLines" "AllowSingleLine" "AllowMultiplePerLine" )");
    EXPECT_EQ(complete(R"({ // |)"), "");
    const Json item = ask("completion", R"({"line": {"tab|"}})")[1];
    EXPECT_EQ(sketchRange(item["textEdit"]["range"]) + item["textEdit"]["newText"].get<std::string>(),
              "0:10-0:15\"tabSize\": ");
    const Json hover = ask("hover", R"({"line": {"tab|Size": 2}})");
    EXPECT_EQ(hover["contents"]["value"],
              "**line.tabSize**\n\nColumns between tab stops.\n\nDefault: `4`; from 1 to 64");
    EXPECT_FALSE(ask("hover", R"({"required|Version": ""})").is_null());
    EXPECT_TRUE(ask("hover", R"({"nonsense|": 2})").is_null());
    client.open("a.omb", "x\n");
    EXPECT_TRUE(
        client.ask("textDocument/completion", "a.omb", {{"position", {{"line", 0}, {"character", 0}}}})
            .is_null());
}

TEST(LspWatch, AsksForTheFilesThatOptionsComeFrom) {
    LspClient client;
    client.folder.write(".ombrel-format.json", R"({"extends": "base/x.json"})");
    client.folder.write("base/x.json", "{}");
    client.initialize(
        {{"workspace",
          {{"didChangeWatchedFiles", {{"dynamicRegistration", true}}}, {"configuration", true}}}});
    client.open("a.omb", "x\n");
    const Json registration = client.findLast("client/registerCapability")["registrations"][0];
    EXPECT_EQ(registration["registerOptions"]["watchers"][0]["globPattern"],
              (client.folder.getPath() / "base/x.json").string());
    EXPECT_EQ(client.findLast("workspace/configuration")["items"][0]["section"], "ombrel");
}

} // namespace
