#include "app/BarDropHandler.h"

#include "app/ToastManager.h"
#include "exchange/PaletteFileTexts.h"

#include <QFileInfo>

namespace hueshelf::app {

using namespace Qt::StringLiterals;

BarDropHandler::BarDropHandler(ToastManager& toasts, Actions actions)
    : m_toasts(toasts), m_actions(std::move(actions)) {}

BarDropHandler::Kind BarDropHandler::classify(const QUrl& url) {
    // The last dot of the whole path, as a file name without one has no extension.
    const QString extension = QFileInfo(url.path()).suffix().toLower();
    if (extension == u"hueshelf")
        return Kind::paletteFile;
    static const QStringList images = {u"png"_s,  u"jpg"_s, u"jpeg"_s, u"gif"_s,  u"webp"_s,
                                       u"tiff"_s, u"tif"_s, u"bmp"_s,  u"heic"_s, u"heif"_s};
    if (images.contains(extension))
        return Kind::image;
    return Kind::neither;
}

bool BarDropHandler::handleBarDrop(const QList<QUrl>& urls) {
    if (urls.isEmpty())
        return false;
    const QUrl& first = urls.constFirst();
    const bool several = urls.size() > 1;
    const QString path = first.isLocalFile() ? first.toLocalFile() : first.path();

    switch (classify(first)) {
    case Kind::paletteFile:
        if (!m_actions.importFile) {
            m_toasts.show(PaletteFileTexts::standInToast, PaletteFileTexts::standInIcon,
                          std::nullopt, PaletteFileTexts::standInToastSeconds);
            return true;
        }
        m_actions.importFile(path, several);
        return true;
    case Kind::image:
        if (several)
            m_toasts.show(u"One file at a time"_s, u"doc.on.doc"_s, std::nullopt,
                          ToastManager::kNoticeDuration);
        m_actions.extractImage(path);
        return true;
    case Kind::neither:
        break;
    }
    m_toasts.show(PaletteFileTexts::dropRefusal, u"exclamationmark.triangle"_s, std::nullopt,
                  ToastManager::kErrorDuration);
    if (!(m_actions.reduceMotion && m_actions.reduceMotion()) && m_actions.shake)
        m_actions.shake();
    return false;
}

} // namespace hueshelf::app
