#include "cli/ColorArguments.h"

#include "cli/Invocation.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace hueshelf::cli::ColorArguments {

namespace {

// The message must stay one line whatever was pasted, so line breaks and other control
// characters are shown escaped, as a C or JSON string would show them.
QString quoted(const QString& input) {
    QString text = u"\""_s;
    for (const QChar c : input) {
        switch (c.unicode()) {
        case u'\n':
            text += u"\\n"_s;
            break;
        case u'\r':
            text += u"\\r"_s;
            break;
        case u'\t':
            text += u"\\t"_s;
            break;
        case u'"':
            text += u"\\\""_s;
            break;
        case u'\\':
            text += u"\\\\"_s;
            break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7f ||
                c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph)
                text += u"\\u"_s + QString::number(c.unicode(), 16).rightJustified(4, u'0');
            else
                text += c;
        }
    }
    return text + u'"';
}

} // namespace

QString unreadableMessage(const QStringList& inputs) {
    QStringList all;
    for (const QString& input : inputs)
        all << quoted(input);
    return u"Not a color code: "_s + all.join(u", "_s);
}

int reportEachCode(Invocation& call, const std::function<CodeReport(const QString&)>& describe) {
    QJsonArray array;
    QStringList unreadable;
    bool first = true;
    for (const QString& input : call.positionals()) {
        const CodeReport report = describe(input);
        if (!report.isReadable)
            unreadable << input;
        if (call.json()) {
            array.append(report.json);
        } else {
            call.out() << (first ? u""_s : u"\n"_s) << report.text;
            first = false;
        }
    }
    if (call.json())
        call.printJson(array);
    if (!unreadable.isEmpty())
        return call.fail(unreadableMessage(unreadable));
    return ExitStatus::success;
}

} // namespace hueshelf::cli::ColorArguments
