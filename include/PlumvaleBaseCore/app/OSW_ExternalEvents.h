// OSW_ExternalEvents: files the system asks the application to open, kept until it can.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>
#include <QStringList>

/// What opens a document on the system's request.
class PLUMVALE_EXPORT OSW_OpenDocumentHandler {
public:
    virtual ~OSW_OpenDocumentHandler();
    /// Whether `fileName` is a document this handler opens (for the application's own use;
    /// OSW_ExternalEvents hands every name to openDocument without asking).
    virtual bool canOpenDocument(const QString& fileName) const = 0;
    /// Opens `fileName`.
    virtual void openDocument(const QString& fileName) = 0;
};

/// The one queue of files to open: names that arrive before a handler is installed wait,
/// in arrival order, and go to the handler when it comes.
///
/// Conventions: main thread only, not locked; the singleton lives until process exit.
class PLUMVALE_EXPORT OSW_ExternalEvents {
public:
    virtual ~OSW_ExternalEvents();
    /// Stores `handler`; a non-null one at once receives the pending names, in order, and
    /// the pending list is emptied.
    virtual void setOpenDocumentHandler(OSW_OpenDocumentHandler* handler);
    /// The stored handler, or null.
    OSW_OpenDocumentHandler* documentHandler() const { return m_handler; }

    /// The singleton, made on the first call (which empties the pending list).
    static OSW_ExternalEvents* shared();
    /// Hands `fileName` to the handler when there is one, else keeps it pending.
    static void addPending(const QString& fileName);
    /// The first pending name, and every pending name is then dropped (an application
    /// launched to open several files opens the first); empty when none is pending.
    static QString getInputFileName();
    /// The names pending now, in arrival order.
    static QStringList pending();

private:
    OSW_ExternalEvents() = default;

    OSW_OpenDocumentHandler* m_handler = nullptr;
};
