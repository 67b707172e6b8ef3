// OSW_ExternalEvents: the queue of files to open and its handler.
#include <PlumvaleBaseCore/app/OSW_ExternalEvents.h>

namespace {

OSW_ExternalEvents* g_shared = nullptr;

QStringList& pendingList() {
    static QStringList names;
    return names;
}

} // namespace

OSW_OpenDocumentHandler::~OSW_OpenDocumentHandler() = default;

OSW_ExternalEvents::~OSW_ExternalEvents() = default;

void OSW_ExternalEvents::setOpenDocumentHandler(OSW_OpenDocumentHandler* handler) {
    m_handler = handler;
    if (!handler || pendingList().isEmpty()) return;
    const QStringList names = pendingList();
    pendingList().clear();
    for (const QString& name : names)
        handler->openDocument(name);
}

OSW_ExternalEvents* OSW_ExternalEvents::shared() {
    if (!g_shared) {
        // Never deleted: a handler may still be reached during static destruction.
        g_shared = new OSW_ExternalEvents;
        pendingList().clear();
    }
    return g_shared;
}

void OSW_ExternalEvents::addPending(const QString& fileName) {
    if (g_shared && g_shared->m_handler)
        g_shared->m_handler->openDocument(fileName);
    else
        pendingList().append(fileName);
}

QString OSW_ExternalEvents::getInputFileName() {
    if (pendingList().isEmpty()) return QString();
    const QString first = pendingList().first();
    pendingList().clear();
    return first;
}

QStringList OSW_ExternalEvents::pending() {
    return pendingList();
}
