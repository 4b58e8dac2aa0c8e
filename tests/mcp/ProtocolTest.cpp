#include "McpTestHome.h"

#include <QRegularExpression>

#include <cctype>

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

// What one line should bring back: silence, a result, or an error with this code; and the id
// exactly as the answer must spell it.
struct ProtocolCase {
    const char* label;
    QByteArray line;
    enum class Answer { none, result, error } answer;
    int code = 0;
    QByteArray id = "null";
};

using Answer = ProtocolCase::Answer;

class Protocol : public McpTestHome, public ::testing::WithParamInterface<ProtocolCase> {};

TEST_P(Protocol, AnswersAsJsonRpcRequires) {
    const ProtocolCase& c = GetParam();
    const std::optional<QByteArray> answer = server->handle(c.line);
    if (c.answer == Answer::none) {
        EXPECT_FALSE(answer.has_value()) << answer->toStdString();
        return;
    }
    ASSERT_TRUE(answer.has_value());
    EXPECT_FALSE(answer->contains('\n'));
    // The id goes back as it was written, ahead of everything else.
    EXPECT_TRUE(answer->startsWith(QByteArray("{\"id\":" + c.id + ','))) << answer->toStdString();
    const QJsonObject object = QJsonDocument::fromJson(*answer).object();
    EXPECT_EQ(object.value(u"jsonrpc"_s), u"2.0"_s);
    if (c.answer == Answer::result) {
        EXPECT_TRUE(object.value(u"result"_s).isObject()) << answer->toStdString();
        EXPECT_FALSE(object.contains(u"error"_s));
    } else {
        EXPECT_EQ(object.value(u"error"_s).toObject().value(u"code"_s).toInt(), c.code)
            << answer->toStdString();
        EXPECT_FALSE(object.value(u"error"_s).toObject().value(u"message"_s).toString().isEmpty());
        EXPECT_FALSE(object.contains(u"result"_s));
    }
}

const ProtocolCase protocolCases[] = {
    // Ids of every form come back exactly.
    {"integer id", R"({"jsonrpc":"2.0","id":7,"method":"ping"})", Answer::result, 0, "7"},
    {"zero id", R"({"jsonrpc":"2.0","id":0,"method":"ping"})", Answer::result, 0, "0"},
    {"negative id", R"({"jsonrpc":"2.0","id":-12,"method":"ping"})", Answer::result, 0, "-12"},
    {"id past a double's precision", R"({"jsonrpc":"2.0","id":9007199254740993,"method":"ping"})",
     Answer::result, 0, "9007199254740993"},
    {"fractional id as written", R"({"jsonrpc":"2.0","id":1.50,"method":"ping"})", Answer::result,
     0, "1.50"},
    {"exponent id as written", R"({"jsonrpc":"2.0","id":1e3,"method":"ping"})", Answer::result, 0,
     "1e3"},
    {"string id", R"({"jsonrpc":"2.0","id":"abc-1","method":"ping"})", Answer::result, 0,
     R"("abc-1")"},
    {"empty string id", R"({"jsonrpc":"2.0","id":"","method":"ping"})", Answer::result, 0, R"("")"},
    {"string id with escapes", R"({"jsonrpc":"2.0","id":"a\"b\u00e9","method":"ping"})",
     Answer::result, 0, R"("a\"b\u00e9")"},
    {"numeric-looking string id", R"({"jsonrpc":"2.0","id":"7","method":"ping"})", Answer::result,
     0, R"("7")"},
    {"id after the method, spaced", R"( { "method" : "ping" , "jsonrpc":"2.0", "id" :  42 } )",
     Answer::result, 0, "42"},
    {"id key inside params is not the id",
     R"({"jsonrpc":"2.0","method":"ping","params":{"id":99},"id":3})", Answer::result, 0, "3"},
    {"carriage return tolerated", "{\"jsonrpc\":\"2.0\",\"id\":5,\"method\":\"ping\"}\r",
     Answer::result, 0, "5"},
    {"resources list", R"({"jsonrpc":"2.0","id":1,"method":"resources/list"})", Answer::result, 0,
     "1"},
    {"prompts list", R"({"jsonrpc":"2.0","id":1,"method":"prompts/list"})", Answer::result, 0, "1"},

    // Silence: notifications of any kind, answers from the client, empty lines.
    {"initialized notification", R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
     Answer::none},
    {"cancelled notification",
     R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":1}})",
     Answer::none},
    {"unknown notification", R"({"jsonrpc":"2.0","method":"no/such/thing"})", Answer::none},
    {"ping as a notification", R"({"jsonrpc":"2.0","method":"ping"})", Answer::none},
    {"answer from the client", R"({"jsonrpc":"2.0","id":4,"result":{}})", Answer::none},
    {"error answer from the client",
     R"({"jsonrpc":"2.0","id":4,"error":{"code":-1,"message":"x"}})", Answer::none},
    {"empty line", "", Answer::none},
    {"blank line", "  \t ", Answer::none},
    {"carriage return alone", "\r", Answer::none},

    // Unknown methods, at once.
    {"unknown method", R"({"jsonrpc":"2.0","id":2,"method":"tools/frobnicate"})", Answer::error,
     -32601, "2"},
    {"server discovery", R"({"jsonrpc":"2.0","id":"d","method":"server/discover"})", Answer::error,
     -32601, R"("d")"},
    {"logging not offered", R"({"jsonrpc":"2.0","id":2,"method":"logging/setLevel"})",
     Answer::error, -32601, "2"},

    // Not JSON at all.
    {"garbage", "hello", Answer::error, -32700},
    {"truncated object", R"({"jsonrpc":"2.0","id":1,)", Answer::error, -32700},
    {"trailing garbage", R"({"jsonrpc":"2.0","id":1,"method":"ping"} x)", Answer::error, -32700},

    // JSON, but not a request.
    {"batch", R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])", Answer::error, -32600},
    {"empty batch", "[]", Answer::error, -32600},
    {"number", "5", Answer::error, -32600},
    {"string", R"("ping")", Answer::error, -32600},
    {"null", "null", Answer::error, -32600},
    {"empty object", "{}", Answer::error, -32600},
    {"version alone", R"({"jsonrpc":"2.0"})", Answer::error, -32600},
    {"notification without version", R"({"method":"notifications/initialized"})", Answer::error,
     -32600},
    {"missing version", R"({"id":9,"method":"ping"})", Answer::error, -32600, "9"},
    {"wrong version", R"({"jsonrpc":"1.0","id":9,"method":"ping"})", Answer::error, -32600, "9"},
    {"numeric version", R"({"jsonrpc":2.0,"id":9,"method":"ping"})", Answer::error, -32600, "9"},
    {"null id", R"({"jsonrpc":"2.0","id":null,"method":"ping"})", Answer::error, -32600},
    {"boolean id", R"({"jsonrpc":"2.0","id":true,"method":"ping"})", Answer::error, -32600},
    {"object id", R"({"jsonrpc":"2.0","id":{"a":1},"method":"ping"})", Answer::error, -32600},
    {"array id", R"({"jsonrpc":"2.0","id":[1],"method":"ping"})", Answer::error, -32600},
    {"method not a string", R"({"jsonrpc":"2.0","id":3,"method":5})", Answer::error, -32600, "3"},
    {"no method", R"({"jsonrpc":"2.0","id":3})", Answer::error, -32600, "3"},
    {"params a string", R"({"jsonrpc":"2.0","id":3,"method":"ping","params":"x"})", Answer::error,
     -32600, "3"},

    // Known methods with parameters they can't take.
    {"params by position", R"({"jsonrpc":"2.0","id":3,"method":"ping","params":[]})", Answer::error,
     -32602, "3"},
    {"call without a name", R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{}})",
     Answer::error, -32602, "3"},
    {"call with a number for a name",
     R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":5}})", Answer::error, -32602,
     "3"},
    {"unknown tool",
     R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"paint_house"}})",
     Answer::error, -32602, "3"},
    {"tool name in another case",
     R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"Get_Brand_Colors"}})",
     Answer::error, -32602, "3"},
    {"arguments a list",
     R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"list_palettes","arguments":[]}})",
     Answer::error, -32602, "3"},
};

INSTANTIATE_TEST_SUITE_P(Lines, Protocol, ::testing::ValuesIn(protocolCases),
                         [](const ::testing::TestParamInfo<ProtocolCase>& param) {
                             std::string name = param.param.label;
                             for (char& c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             }
                             return name;
                         });

class Handshake : public McpTestHome {};

TEST_F(Handshake, AgreesOnTheClientsVersionWhenSupportedElseTheNewest) {
    const std::pair<QJsonValue, QString> cases[] = {
        {u"2025-11-25"_s, u"2025-11-25"_s},
        {u"2025-06-18"_s, u"2025-06-18"_s},
        {u"2025-03-26"_s, u"2025-03-26"_s},
        {u"2024-11-05"_s, u"2024-11-05"_s},
        {u"2099-01-01"_s, u"2025-11-25"_s},
        {u"2024-10-07"_s, u"2025-11-25"_s},
        {QJsonValue(20250618), u"2025-11-25"_s},
        {QJsonValue(), u"2025-11-25"_s},
        {QJsonValue(QJsonValue::Undefined), u"2025-11-25"_s},
    };
    for (const auto& [asked, agreed] : cases) {
        SCOPED_TRACE(toText(QJsonObject{{u"asked"_s, asked}}));
        QJsonObject params{
            {u"capabilities"_s, QJsonObject()},
            {u"clientInfo"_s, QJsonObject{{u"name"_s, u"test"_s}, {u"version"_s, u"1"_s}}}};
        if (!asked.isUndefined())
            params.insert(u"protocolVersion"_s, asked);
        const QJsonObject result = request(u"initialize"_s, params).value(u"result"_s).toObject();
        EXPECT_EQ(result.value(u"protocolVersion"_s).toString(), agreed);
    }
}

TEST_F(Handshake, NamesTheServerItsVersionToolsAndPurpose) {
    const QJsonObject result =
        request(u"initialize"_s, QJsonObject{{u"protocolVersion"_s, u"2025-11-25"_s}})
            .value(u"result"_s)
            .toObject();
    const QJsonObject info = result.value(u"serverInfo"_s).toObject();
    EXPECT_EQ(info.value(u"name"_s).toString(), u"hueshelf"_s);
    EXPECT_EQ(info.value(u"version"_s).toString(), QStringLiteral(HUESHELF_VERSION));
    const QJsonObject capabilities = result.value(u"capabilities"_s).toObject();
    EXPECT_TRUE(capabilities.value(u"tools"_s).isObject());
    EXPECT_TRUE(capabilities.value(u"resources"_s).isObject());
    EXPECT_TRUE(capabilities.value(u"prompts"_s).isObject());
    const QString instructions = result.value(u"instructions"_s).toString();
    EXPECT_TRUE(instructions.contains(u"get_brand_colors"_s));
    EXPECT_TRUE(instructions.contains(u"brand colors"_s));
    EXPECT_TRUE(instructions.contains(u"palette"_s));
}

TEST_F(Handshake, ListsNoResourcesTemplatesOrPrompts) {
    const std::pair<QString, QString> cases[] = {
        {u"resources/list"_s, u"resources"_s},
        {u"resources/templates/list"_s, u"resourceTemplates"_s},
        {u"prompts/list"_s, u"prompts"_s},
    };
    for (const auto& [method, key] : cases) {
        const QJsonObject result = request(method, QJsonObject()).value(u"result"_s).toObject();
        ASSERT_TRUE(result.value(key).isArray()) << method.toStdString();
        EXPECT_TRUE(result.value(key).toArray().isEmpty());
    }
}

TEST_F(Handshake, PingAnswersAnEmptyObject) {
    EXPECT_EQ(request(u"ping"_s, QJsonObject()).value(u"result"_s), QJsonValue(QJsonObject()));
}

// What a client reads before the first call: every tool fully described, and only the one
// that writes said to write.
TEST_F(Handshake, ListsEachToolWithSchemasAndHonestAnnotations) {
    const QJsonArray list = request(u"tools/list"_s, QJsonObject())
                                .value(u"result"_s)
                                .toObject()
                                .value(u"tools"_s)
                                .toArray();
    QStringList names;
    const QRegularExpression namePattern(u"^[a-z0-9_]{1,64}$"_s);
    for (const QJsonValue& entry : list) {
        const QJsonObject tool = entry.toObject();
        const QString name = tool.value(u"name"_s).toString();
        SCOPED_TRACE(name.toStdString());
        names << name;
        EXPECT_TRUE(namePattern.match(name).hasMatch());
        EXPECT_FALSE(tool.value(u"title"_s).toString().isEmpty());
        EXPECT_GT(tool.value(u"description"_s).toString().size(), 60);
        EXPECT_EQ(tool.value(u"inputSchema"_s).toObject().value(u"type"_s), u"object"_s);
        EXPECT_EQ(tool.value(u"outputSchema"_s).toObject().value(u"type"_s), u"object"_s);
        const QJsonObject annotations = tool.value(u"annotations"_s).toObject();
        const bool writes = name == u"create_palette"_s;
        EXPECT_EQ(annotations.value(u"readOnlyHint"_s), QJsonValue(!writes));
        if (writes) {
            EXPECT_EQ(annotations.value(u"destructiveHint"_s), QJsonValue(false));
            EXPECT_EQ(annotations.value(u"idempotentHint"_s), QJsonValue(false));
        }
    }
    EXPECT_EQ(names, (QStringList{u"get_brand_colors"_s, u"list_palettes"_s, u"get_palette"_s,
                                  u"check_palette"_s, u"check_contrast"_s, u"convert_color"_s,
                                  u"create_palette"_s}));
}

// A tool error is a result the model reads, with the sentence as text; only the protocol's
// own mistakes are errors.
TEST_F(Handshake, BadArgumentsAreToolResultsNotProtocolErrors) {
    const QJsonObject answer = request(
        u"tools/call"_s, QJsonObject{{u"name"_s, u"check_contrast"_s},
                                     {u"arguments"_s, QJsonObject{{u"foreground"_s, u"#000"_s}}}});
    EXPECT_FALSE(answer.contains(u"error"_s));
    const QJsonObject result = answer.value(u"result"_s).toObject();
    EXPECT_EQ(result.value(u"isError"_s), QJsonValue(true));
    const QJsonArray content = result.value(u"content"_s).toArray();
    ASSERT_EQ(content.size(), 1);
    EXPECT_EQ(content.at(0).toObject().value(u"type"_s), u"text"_s);
    EXPECT_EQ(content.at(0).toObject().value(u"text"_s).toString(),
              u"check_contrast needs the argument \"background\"."_s);
}

TEST_F(Handshake, MissingArgumentsObjectMeansNoArguments) {
    seed({makePalette(u"Only"_s, {makeColor(u"Ink"_s, u"#111111"_s)})}, QJsonValue());
    for (
        const QByteArray& line :
        {QByteArray(
             R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"list_palettes"}})"),
         QByteArray(
             R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"list_palettes","arguments":null}})")}) {
        const QJsonObject result = exchange(line).value(u"result"_s).toObject();
        EXPECT_EQ(result.value(u"isError"_s), QJsonValue(false));
        EXPECT_EQ(
            result.value(u"structuredContent"_s).toObject().value(u"palettes"_s).toArray().size(),
            1);
    }
}

} // namespace
} // namespace hueshelf::testing
