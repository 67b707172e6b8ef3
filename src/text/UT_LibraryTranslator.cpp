// Installing the library's own message catalogue into the running application.
#include <PlumvaleBaseCore/text/UT_LibraryTranslator.h>

#include <QCoreApplication>
#include <QFile>
#include <QTranslator>

#include <memory>

namespace {

std::unique_ptr<QTranslator> g_translator;

} // namespace

QString UT_LibraryTranslator::catalogue(const QString& language) {
    return QStringLiteral(":/PlumvaleBaseCore/i18n/PlumvaleBaseCore_%1.qm").arg(language);
}

bool UT_LibraryTranslator::install(const QString& language) {
    remove();
    if (!QCoreApplication::instance() || language.isEmpty()) return false;
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
