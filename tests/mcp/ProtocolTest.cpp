#include "McpTestHome.h"

namespace hueshelf::testing {
namespace {

using namespace Qt::StringLiterals;

using Protocol = McpTestHome;

constexpr int silent = 1;
constexpr int answered = 0;

// Each line brings back silence, a result, or an error of its code, with the id exactly as the
// client wrote it (null where there is none to be had), ahead of everything else.
TEST_F(Protocol, answersAsJsonRpcRequires) {
    const std::tuple<QByteArray, int, QByteArray> cases[] = {
        {R"({"jsonrpc":"2.0","id":-9007199254740993,"method":"ping"})", answered,
         "-9007199254740993"},
        {R"({"jsonrpc":"2.0","id":1.50,"method":"prompts/list"})", answered, "1.50"},
        {R"({"jsonrpc":"2.0","id":"a\"b\u00e9","method":"resources/list"})", answered,
         R"("a\"b\u00e9")"},
        {R"( { "method" : "ping" , "params":{"id":99}, "jsonrpc":"2.0", "id" :  42 } )", answered,
         "42"},
        {R"({"jsonrpc":"2.0","id":1,"id":2.50,"method":"ping"})", answered, "2.50"},
        {"{\"jsonrpc\":\"2.0\",\"id\":5,\"method\":\"ping\"}\r", answered, "5"},
        {R"({"jsonrpc":"2.0","method":"notifications/initialized"})", silent, ""},
        {R"({"jsonrpc":"2.0","method":"no/such/thing"})", silent, ""},
        {R"({"jsonrpc":"2.0","id":4,"result":{}})", silent, ""},
        {" \t\r", silent, ""},
        {R"({"jsonrpc":"2.0","id":"d","method":"tools/frobnicate"})", -32601, R"("d")"},
        {R"({"jsonrpc":"2.0","id":1,"method":"ping"} x)", -32700, "null"},
        {R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])", -32600, "null"},
        {R"({"method":"notifications/initialized"})", -32600, "null"},
        {R"({"jsonrpc":"1.0","id":9,"method":"ping"})", -32600, "9"},
        {R"({"jsonrpc":"2.0","id":null,"method":"ping"})", -32600, "null"},
        {R"({"jsonrpc":"2.0","id":3,"method":"ping","params":"x"})", -32600, "3"},
        {R"({"jsonrpc":"2.0","id":3,"method":"ping","params":[]})", -32602, "3"},
        {R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"Get_Brand_Colors"}})",
         -32602, "3"},
        {R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"list_palettes","arguments":[]}})",
         -32602, "3"},
    };
    for (const auto& [line, code, id] : cases) {
        SCOPED_TRACE(line.toStdString());
        const std::optional<QByteArray> answer = server->handle(line);
        ASSERT_EQ(answer.has_value(), code != silent);
        if (!answer)
            continue;
        EXPECT_TRUE(answer->startsWith(QByteArray("{\"id\":" + id + ','))) << answer->toStdString();
        const QJsonObject object = QJsonDocument::fromJson(*answer).object();
        EXPECT_EQ(object.value(u"jsonrpc"_s), u"2.0"_s);
        EXPECT_EQ(object.value(u"result"_s).isObject(), code == answered);
        EXPECT_EQ(object.value(u"error"_s)[u"code"_s].toInt(), code);
    }
}

TEST_F(Protocol, handshakeAgreesOnTheClientsVersionWhenSupportedElseTheNewest) {
    const std::pair<QString, QString> cases[] = {{u"2025-06-18"_s, u"2025-06-18"_s},
                                                 {u"2024-11-05"_s, u"2024-11-05"_s},
                                                 {u"2099-01-01"_s, u"2025-11-25"_s},
                                                 {QString(), u"2025-11-25"_s}};
    for (const auto& [asked, agreed] : cases) {
        const QJsonObject result = request(u"initialize"_s, {{u"protocolVersion"_s, asked}});
        EXPECT_EQ(result.value(u"protocolVersion"_s).toString(), agreed);
        EXPECT_EQ(result[u"serverInfo"_s][u"version"_s], QStringLiteral(HUESHELF_VERSION));
    }
}

// What a client reads before the first call: every tool described, only the one that writes
// said to write.
TEST_F(Protocol, listsEachToolWithSchemasAndHonestAnnotations) {
    QStringList names;
    for (const QJsonValue& entry : request(u"tools/list"_s).value(u"tools"_s).toArray()) {
        const QString name = entry[u"name"_s].toString();
        names << name;
        EXPECT_EQ(entry[u"annotations"_s][u"readOnlyHint"_s],
                  QJsonValue(name != u"create_palette"));
    }
    EXPECT_EQ(names, (QStringList{u"get_brand_colors"_s, u"list_palettes"_s, u"get_palette"_s,
                                  u"check_palette"_s, u"check_contrast"_s, u"convert_color"_s,
                                  u"create_palette"_s}));
}

} // namespace
} // namespace hueshelf::testing
