#include "util/UserCharacters.h"

#include <QTextBoundaryFinder>

namespace hueshelf::UserCharacters {

int count(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int characters = 0;
    while (finder.toNextBoundary() > 0)
        ++characters;
    return characters;
}

QString first(const QString& text, int limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int i = 0; i < limit; ++i) {
        const qsizetype next = finder.toNextBoundary();
        if (next < 0)
            return text;
        end = next;
    }
    return text.left(end);
}

} // namespace hueshelf::UserCharacters
