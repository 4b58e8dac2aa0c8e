#include "mcp/McpServer.h"

#include "mcp/JsonRpc.h"
#include "mcp/McpTools.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <exception>

using namespace Qt::StringLiterals;

namespace hueshelf::mcp {

namespace {

bool isBlank(QByteArrayView text) {
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n')
            return false;
    }
    return true;
}

// Text that the parser refuses only because it is a lone string, number, true, false or null:
// valid JSON, just not a request.
bool isJsonScalar(QByteArrayView text) {
    QJsonParseError error{};
    const QJsonDocument wrapped = QJsonDocument::fromJson('[' + text.toByteArray() + ']', &error);
    return error.error == QJsonParseError::NoError && wrapped.array().size() == 1;
}

bool isAnswerFromClient(const QJsonObject& message) {
    return !message.contains(u"method"_s) &&
           (message.contains(u"result"_s) || message.contains(u"error"_s));
}

} // namespace

McpServer::McpServer(const McpTools& tools) : m_tools(tools) {}

const QStringList& McpServer::protocolVersions() {
    static const QStringList versions{u"2025-11-25"_s, u"2025-06-18"_s, u"2025-03-26"_s,
                                      u"2024-11-05"_s};
    return versions;
}

QString McpServer::instructions() {
    return u"HueShelf is the user's color palette app. These tools read the palettes that the "
           u"user keeps in HueShelf, always as they are now, and can save a new one. When the "
           u"user mentions \"my brand colors\", \"my colors\" or \"my palette\", call "
           u"get_brand_colors: it returns the palette the user chose for AI tools, with each "
           u"color's name and hex code. Use list_palettes and get_palette for the user's other "
           u"palettes, check_contrast before pairing a text color with a background, "
           u"check_palette to review a palette for readability and color-blind look-alikes, "
           u"and convert_color for CSS, Tailwind and other code forms. Call create_palette "
           u"only when the user asks to save colors as a palette."_s;
}

std::optional<QByteArray> McpServer::handle(QByteArrayView line) const {
    while (line.endsWith('\r'))
        line.chop(1);
    if (isBlank(line))
        return std::nullopt;

    const QByteArray text = line.toByteArray();
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (isJsonScalar(line))
            return JsonRpc::error(RequestId::null(), JsonRpc::invalidRequest,
                                  u"Invalid Request: a message must be a JSON object"_s);
        return JsonRpc::error(RequestId::null(), JsonRpc::parseError,
                              u"Parse error: "_s + parseError.errorString());
    }
    if (document.isArray())
        return JsonRpc::error(RequestId::null(), JsonRpc::invalidRequest,
                              u"Invalid Request: batches are not supported"_s);

    const QJsonObject message = document.object();
    const QJsonValue method = message.value(u"method"_s);
    const bool isVersion2 = message.value(u"jsonrpc"_s) == QJsonValue(u"2.0"_s);

    if (!message.contains(u"id"_s)) {
        // Notifications are never answered, whatever they announce; nor are answers to
        // requests, since this server sends none.
        if ((isVersion2 && method.isString()) || isAnswerFromClient(message))
            return std::nullopt;
        return JsonRpc::error(RequestId::null(), JsonRpc::invalidRequest,
                              u"Invalid Request: not a JSON-RPC 2.0 request or notification"_s);
    }

    const std::optional<RequestId> id = RequestId::read(text, message.value(u"id"_s));
    if (!id)
        return JsonRpc::error(RequestId::null(), JsonRpc::invalidRequest,
                              u"Invalid Request: the id must be a string or a number"_s);
    if (isAnswerFromClient(message))
        return std::nullopt;
    if (!isVersion2)
        return JsonRpc::error(*id, JsonRpc::invalidRequest,
                              u"Invalid Request: \"jsonrpc\" must be \"2.0\""_s);
    if (!method.isString())
        return JsonRpc::error(*id, JsonRpc::invalidRequest,
                              u"Invalid Request: \"method\" must be a string"_s);
    const QJsonValue params = message.value(u"params"_s);
    if (!params.isUndefined() && !params.isObject() && !params.isArray())
        return JsonRpc::error(*id, JsonRpc::invalidRequest,
                              u"Invalid Request: \"params\" must be an object"_s);
    return request(*id, method.toString(), params);
}

QByteArray McpServer::request(const RequestId& id, const QString& method,
                              const QJsonValue& params) const {
    static const QStringList methods{u"initialize"_s,     u"ping"_s,
                                     u"tools/list"_s,     u"tools/call"_s,
                                     u"resources/list"_s, u"resources/templates/list"_s,
                                     u"prompts/list"_s};
    if (!methods.contains(method))
        return JsonRpc::error(id, JsonRpc::methodNotFound, u"Method not found: "_s + method);
    // By position is valid JSON-RPC, but every MCP method takes named parameters.
    if (params.isArray())
        return JsonRpc::error(id, JsonRpc::invalidParams,
                              u"Invalid params: \"params\" must be an object"_s);
    const QJsonObject named = params.toObject();

    if (method == u"initialize"_s)
        return JsonRpc::result(id, initialize(named));
    if (method == u"tools/list"_s)
        return JsonRpc::result(id, QJsonObject{{u"tools"_s, m_tools.listJson()}});
    if (method == u"tools/call"_s)
        return callTool(id, named);
    if (method == u"resources/list"_s)
        return JsonRpc::result(id, QJsonObject{{u"resources"_s, QJsonArray()}});
    if (method == u"resources/templates/list"_s)
        return JsonRpc::result(id, QJsonObject{{u"resourceTemplates"_s, QJsonArray()}});
    if (method == u"prompts/list"_s)
        return JsonRpc::result(id, QJsonObject{{u"prompts"_s, QJsonArray()}});
    return JsonRpc::result(id, QJsonObject()); // ping
}

QJsonObject McpServer::initialize(const QJsonObject& params) const {
    const QString asked = params.value(u"protocolVersion"_s).toString();
    const QString version =
        protocolVersions().contains(asked) ? asked : protocolVersions().constFirst();
    return QJsonObject{
        {u"protocolVersion"_s, version},
        {u"capabilities"_s, QJsonObject{{u"tools"_s, QJsonObject{{u"listChanged"_s, false}}},
                                        {u"resources"_s, QJsonObject()},
                                        {u"prompts"_s, QJsonObject()}}},
        {u"serverInfo"_s, QJsonObject{{u"name"_s, u"hueshelf"_s},
                                      {u"title"_s, u"HueShelf"_s},
                                      {u"version"_s, QStringLiteral(HUESHELF_VERSION)}}},
        {u"instructions"_s, instructions()},
    };
}

QByteArray McpServer::callTool(const RequestId& id, const QJsonObject& params) const {
    const QJsonValue name = params.value(u"name"_s);
    if (!name.isString())
        return JsonRpc::error(id, JsonRpc::invalidParams,
                              u"Invalid params: tools/call needs the tool's \"name\""_s);
    const QJsonValue arguments = params.value(u"arguments"_s);
    if (!arguments.isUndefined() && !arguments.isNull() && !arguments.isObject())
        return JsonRpc::error(id, JsonRpc::invalidParams,
                              u"Invalid params: \"arguments\" must be an object"_s);
    if (!m_tools.find(name.toString()))
        return JsonRpc::error(id, JsonRpc::invalidParams, u"Unknown tool: "_s + name.toString());
    try {
        const std::optional<ToolResult> result =
            m_tools.call(name.toString(), arguments.toObject());
        return JsonRpc::result(id, result->toJson());
    } catch (const std::exception& error) {
        return JsonRpc::error(id, JsonRpc::internalError,
                              u"Internal error: "_s + QString::fromLocal8Bit(error.what()));
    }
}

} // namespace hueshelf::mcp
