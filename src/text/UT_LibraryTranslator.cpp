// Installing the library's own message catalogue into the running application.
#include <PlumvaleBaseCore/text/UT_LibraryTranslator.h>

#include <QCoreApplication>
#include <QTranslator>
#include <QtGlobal>

#include <memory>

// The catalogues are a resource compiled into the library. A static archive leaves out the
// object that registers it unless something refers to it, so it is registered here, once,
// in every build (registering an already registered resource changes nothing). The macro
// declares a global function, so this stays outside any namespace.
static void registerCatalogues() {
    static const bool registered = [] {
        Q_INIT_RESOURCE(PlumvaleBaseCore_i18n);
        return true;
    }();
    (void)registered;
}

namespace {

std::unique_ptr<QTranslator> g_translator;

} // namespace

QString UT_LibraryTranslator::catalogue(const QString& language) {
    registerCatalogues();
    return QStringLiteral(":/PlumvaleBaseCore/i18n/PlumvaleBaseCore_%1.qm").arg(language);
}

bool UT_LibraryTranslator::install(const QString& language) {
    remove();
    if (!QCoreApplication::instance() || language.isEmpty()) return false;
    registerCatalogues();
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(catalogue(language))) return false;
    if (!QCoreApplication::installTranslator(translator.get())) return false;
    g_translator = std::move(translator);
    return true;
}

void UT_LibraryTranslator::remove() {
    if (g_translator && QCoreApplication::instance())
        QCoreApplication::removeTranslator(g_translator.get());
    g_translator.reset();
}
