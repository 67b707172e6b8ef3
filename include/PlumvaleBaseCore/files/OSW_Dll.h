// Dynamic libraries opened by name: DllOpen, DllSymbol, DllClose, DllError.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

/// A loaded library, or null.
using DllModule = void*;

/// Loads `name` with the platform suffix ".so" always appended ("plugin.so" looks for
/// "plugin.so.so"), after remapping the path (oswRemapPath::RemapPath2). A name without '/'
/// is looked up by the system loader, then in oswUtil's search path. Null on failure, with
/// the reason left for DllError().
PLUMVALE_EXPORT DllModule DllOpen(QString name);
/// The address of `symbol` in `module`; null when absent (reason for DllError()).
PLUMVALE_EXPORT void* DllSymbol(DllModule module, const char* symbol);
/// Releases the module; null is ignored.
PLUMVALE_EXPORT void DllClose(DllModule module);
/// The loader's text for the last failure, in one process-wide buffer of 1024 bytes (valid
/// until the next failure); null when no failure is pending. Reading it clears it.
PLUMVALE_EXPORT const char* DllError();
/// `name` as a QString; "dummy" for null.
PLUMVALE_EXPORT QString DllBuildFrameworkName(const char* name);
