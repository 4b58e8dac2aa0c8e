#include "model/TemplateNaming.h"

namespace hueshelf::TemplateNaming {

namespace {
bool isBlank(QChar c) {
    return c == u'\t' || c.category() == QChar::Separator_Space;
}
} // namespace

QString blankTemplateName(qsizetype templateCount) {
    return QStringLiteral("Palette ") + QString::number(templateCount + 1);
}

QString uniqueTemplateName(const QString& wanted, const QStringList& existingNames) {
    if (!existingNames.contains(wanted, Qt::CaseSensitive))
        return wanted;
    for (qsizetype number = 2;; ++number) {
        QString candidate = wanted + u' ' + QString::number(number);
        if (!existingNames.contains(candidate, Qt::CaseSensitive))
            return candidate;
    }
}

QString trimmedOfBlanks(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}

} // namespace hueshelf::TemplateNaming
