#include "aitools/AIToolError.h"

using namespace Qt::StringLiterals;

namespace hueshelf {

namespace {

struct ErrorTexts {
    QString operator()(const AIToolConfigWriter::WriteError&) const {
        return u"The settings file isn't valid JSON with an object at its top."_s;
    }
    QString operator()(const ConnectorError& error) const {
        if (error.kind == ConnectorError::Kind::claudeCLINotFound)
            return u"The claude command wasn't found."_s;
        const QString detail = error.standardError.trimmed();
        if (detail.isEmpty())
            return u"The claude command failed."_s;
        return u"The claude command failed: "_s + detail;
    }
    QString operator()(const PlatformError& error) const { return error.message; }
};

} // namespace

QString errorText(const AIToolError& error) {
    return std::visit(ErrorTexts{}, error);
}

} // namespace hueshelf
