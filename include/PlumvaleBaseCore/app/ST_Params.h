// Process-wide switches set at start-up and read by deep library code, and the stop request.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

// Conventions: the switches are set on the main thread during start-up, before worker
// threads read them; reads and writes are single atomic accesses without ordering, so a
// reader on another thread sees a change eventually, never a torn value. Colour recovery and
// delayed colour recovery start true, every other switch false. The server texts and the
// call-back are plain values: set them before any thread reads them.

/// Batch modes.
namespace ST_BatchParams {
/// @{
/// Whether the process renders in batch (no user present).
PLUMVALE_EXPORT void setBatchRendering(bool on);
PLUMVALE_EXPORT bool isBatchRendering();
/// @}
/// @{
/// Whether the process runs a script in batch.
PLUMVALE_EXPORT void setBatchScripting(bool on);
PLUMVALE_EXPORT bool isBatchScripting();
/// @}
} // namespace ST_BatchParams

/// Colour recovery when scenes are read.
namespace ST_ColorRecovery {
/// @{
/// Colour recovery (true until set).
PLUMVALE_EXPORT void setColorRecovery(bool on);
PLUMVALE_EXPORT bool isColorRecovery();
/// @}
/// @{
/// Delayed colour recovery (true until set).
PLUMVALE_EXPORT void setDelayedColorRecovery(bool on);
PLUMVALE_EXPORT bool isDelayedColorRecovery();
/// @}
/// @{
/// Whether the element palette list is used.
PLUMVALE_EXPORT void setUseElementPaletteList(bool on);
PLUMVALE_EXPORT bool isUseElementPaletteList();
/// @}
} // namespace ST_ColorRecovery

/// Drawing quality.
namespace ST_GraphicsParams {
/// @{
/// Whether bitmaps have their alpha premultiplied.
PLUMVALE_EXPORT void setBitmapPremultiplyAlpha(bool on);
PLUMVALE_EXPORT bool bitmapPremultiplyAlpha();
/// @}
/// @{
/// Whether real-time drawing is antialiased.
PLUMVALE_EXPORT void setRealTimeAntialiasing(bool on);
PLUMVALE_EXPORT bool isRealTimeAntialiasing();
/// @}
} // namespace ST_GraphicsParams

/// The render server's identity.
namespace ST_ServerInfo {
/// A server call-back: no arguments, returns whether to go on.
typedef bool (*CallBack)();
/// @{
/// The server's information text (empty until set).
PLUMVALE_EXPORT void setServerInfo(const QString& info);
PLUMVALE_EXPORT const QString& serverInfo();
/// @}
/// @{
/// The server entity's information text (empty until set).
PLUMVALE_EXPORT void setServerEntityInfo(const QString& info);
PLUMVALE_EXPORT const QString& serverEntityInfo();
/// @}
/// @{
/// The server call-back (null until set).
PLUMVALE_EXPORT void setServerCallBack(CallBack callBack);
PLUMVALE_EXPORT CallBack serverCallBack();
/// @}
} // namespace ST_ServerInfo

/// Asks every render to stop, from any thread. There is no way to withdraw the request: a
/// render tool exits after stopping.
PLUMVALE_EXPORT void TUStopRender();
/// Whether a stop was requested; renders poll it.
PLUMVALE_EXPORT bool TUIsStopRender();
