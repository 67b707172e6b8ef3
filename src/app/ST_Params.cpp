// The process-wide switches and the stop-render request.
#include <PlumvaleBaseCore/app/ST_Params.h>

#include <atomic>

namespace {

// Relaxed atomics: a switch has no data of its own to publish, only its value.
std::atomic<bool> g_batchRendering{false};
std::atomic<bool> g_batchScripting{false};
std::atomic<bool> g_colorRecovery{true};
std::atomic<bool> g_delayedColorRecovery{true};
std::atomic<bool> g_useElementPaletteList{false};
std::atomic<bool> g_premultiplyAlpha{false};
std::atomic<bool> g_realTimeAntialiasing{false};
std::atomic<bool> g_stopRender{false};

void put(std::atomic<bool>& flag, bool on) {
    flag.store(on, std::memory_order_relaxed);
}

bool get(const std::atomic<bool>& flag) {
    return flag.load(std::memory_order_relaxed);
}

struct ServerState {
    QString info;
    QString entityInfo;
    ST_ServerInfo::CallBack callBack = nullptr;
};

ServerState& server() {
    static ServerState s;
    return s;
}

} // namespace

void ST_BatchParams::setBatchRendering(bool on) {
    put(g_batchRendering, on);
}
bool ST_BatchParams::isBatchRendering() {
    return get(g_batchRendering);
}
void ST_BatchParams::setBatchScripting(bool on) {
    put(g_batchScripting, on);
}
bool ST_BatchParams::isBatchScripting() {
    return get(g_batchScripting);
}

void ST_ColorRecovery::setColorRecovery(bool on) {
    put(g_colorRecovery, on);
}
bool ST_ColorRecovery::isColorRecovery() {
    return get(g_colorRecovery);
}
void ST_ColorRecovery::setDelayedColorRecovery(bool on) {
    put(g_delayedColorRecovery, on);
}
bool ST_ColorRecovery::isDelayedColorRecovery() {
    return get(g_delayedColorRecovery);
}
void ST_ColorRecovery::setUseElementPaletteList(bool on) {
    put(g_useElementPaletteList, on);
}
bool ST_ColorRecovery::isUseElementPaletteList() {
    return get(g_useElementPaletteList);
}

void ST_GraphicsParams::setBitmapPremultiplyAlpha(bool on) {
    put(g_premultiplyAlpha, on);
}
bool ST_GraphicsParams::bitmapPremultiplyAlpha() {
    return get(g_premultiplyAlpha);
}
void ST_GraphicsParams::setRealTimeAntialiasing(bool on) {
    put(g_realTimeAntialiasing, on);
}
bool ST_GraphicsParams::isRealTimeAntialiasing() {
    return get(g_realTimeAntialiasing);
}

void ST_ServerInfo::setServerInfo(const QString& info) {
    server().info = info;
}
const QString& ST_ServerInfo::serverInfo() {
    return server().info;
}
void ST_ServerInfo::setServerEntityInfo(const QString& info) {
    server().entityInfo = info;
}
const QString& ST_ServerInfo::serverEntityInfo() {
    return server().entityInfo;
}
void ST_ServerInfo::setServerCallBack(CallBack callBack) {
    server().callBack = callBack;
}
ST_ServerInfo::CallBack ST_ServerInfo::serverCallBack() {
    return server().callBack;
}

void TUStopRender() {
    put(g_stopRender, true);
}

bool TUIsStopRender() {
    return get(g_stopRender);
}
