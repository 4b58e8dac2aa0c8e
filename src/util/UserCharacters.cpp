#include "util/UserCharacters.h"

#include <memory>
#include <unicode/ubrk.h>
#include <unicode/utypes.h>

// ICU's character break iterator rather than QTextBoundaryFinder: Qt 6.4's rules split a flag
// (a pair of regional indicators) that follows a pictograph, so "🎨🇫🇷" counted as three.

namespace hueshelf::UserCharacters {

namespace {

struct IteratorCloser {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

// One iterator per thread: opening one loads the rules, setting a text is cheap.
UBreakIterator* iteratorOver(const QString& text) {
    thread_local std::unique_ptr<UBreakIterator, IteratorCloser> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        UBreakIterator* opened = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
        return std::unique_ptr<UBreakIterator, IteratorCloser>(U_SUCCESS(status) ? opened
                                                                                 : nullptr);
    }();
    if (!iterator)
        return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    ubrk_setText(iterator.get(), reinterpret_cast<const UChar*>(text.utf16()),
                 static_cast<int32_t>(text.size()), &status);
    return U_SUCCESS(status) ? iterator.get() : nullptr;
}

} // namespace

int count(const QString& text) {
    if (text.isEmpty())
        return 0;
    UBreakIterator* iterator = iteratorOver(text);
    if (!iterator)
        return static_cast<int>(text.size()); // no rules: every code unit counts, never fewer
    int characters = 0;
    while (ubrk_next(iterator) != UBRK_DONE)
        ++characters;
    return characters;
}

QString first(const QString& text, int limit) {
    if (limit <= 0)
        return {};
    UBreakIterator* iterator = iteratorOver(text);
    if (!iterator)
        return text.left(limit);
    int32_t end = 0;
    for (int i = 0; i < limit; ++i) {
        const int32_t next = ubrk_next(iterator);
        if (next == UBRK_DONE)
            return text;
        end = next;
    }
    return text.left(end);
}

} // namespace hueshelf::UserCharacters
