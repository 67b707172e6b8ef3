// PL_PostMessage: the posted-action event, its filter on the application object, the entry
// points.
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_PostMessage.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <atomic>
#include <mutex>

namespace {

std::atomic<int> g_eventType{0};

// One posted action; destroying the event destroys the action, run or not.
class _PL_PostedEvent : public QEvent {
public:
    _PL_PostedEvent(QEvent::Type type, PL_PostMessageAction* a) : QEvent(type), action(a) {}
    ~_PL_PostedEvent() override { delete action; }
    _PL_PostedEvent(const _PL_PostedEvent&) = delete;
    _PL_PostedEvent& operator=(const _PL_PostedEvent&) = delete;
    PL_PostMessageAction* action;
};

class _PL_PostMessageQtObject;
std::atomic<_PL_PostMessageQtObject*> g_object{nullptr};

// A child of the application object and its event filter: runs each posted action.
class _PL_PostMessageQtObject : public QObject {
public:
    explicit _PL_PostMessageQtObject(QObject* app) : QObject(app), m_app(app) {
        app->installEventFilter(this);
    }
    // Also reached when the application object deletes its children: then forgotten too.
    ~_PL_PostMessageQtObject() override {
        m_app->removeEventFilter(this);
        _PL_PostMessageQtObject* self = this;
        g_object.compare_exchange_strong(self, nullptr);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != g_eventType.load() || watched != m_app)
            return QObject::eventFilter(watched, event);
        auto* posted = static_cast<_PL_PostedEvent*>(event);
        if (!posted->action) return false;
        posted->action->Execute();
        return true;
    }

private:
    QObject* m_app;
};

} // namespace

PL_PostMessageAction::~PL_PostMessageAction() = default;

void PL_PostMessageInit() {
    const PL_AppLock::AppLock lock;
    QCoreApplication* app = QCoreApplication::instance();
    if (g_object.load() || !app) return;
    if (g_eventType.load() == 0) g_eventType.store(QEvent::registerEventType());
    g_object.store(new _PL_PostMessageQtObject(app));
}

void PL_PostMessage(PL_PostMessageAction* action) {
    if (!action) return;
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) {
        action->Execute();
        delete action;
        return;
    }
    if (!g_object.load()) {
        delete action; // not initialised, or cleaned up: dropped on purpose
        return;
    }
    // Qt locks its queue itself; posting under a lock of ours as well keeps the order
    // visible to race checkers, which cannot see inside an uninstrumented Qt.
    static std::mutex posting;
    const std::lock_guard<std::mutex> lock(posting);
    QCoreApplication::postEvent(
        app, new _PL_PostedEvent(static_cast<QEvent::Type>(g_eventType.load()), action));
}

void PL_PostMessageCleanup() {
    const PL_AppLock::AppLock lock;
    delete g_object.exchange(nullptr);
}
