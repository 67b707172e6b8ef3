// TUTeller and its listeners: subscription sets kept consistent whichever side dies first.
#include <PlumvaleBaseCore/text/TUTeller.h>

TUListener::~TUListener() = default;

void TUListener::tellerDestroyed(TUTeller*) {}

void TUListener::phone(TUTeller* teller) {
    if (teller) teller->registerCB(this);
}

void TUListener::hangUp(TUTeller* teller) {
    if (teller) teller->unregisterCB(this);
}

TUTeller::TUTeller() : m_listeners(std::make_shared<std::set<TUListener*>>()) {}

TUTeller::~TUTeller() {
    // Walk by successor so that a listener may leave the set while it is told.
    std::set<TUListener*>& listeners = *m_listeners;
    for (auto it = listeners.begin(); it != listeners.end();) {
        TUListener* listener = *it;
        listener->tellerDestroyed(this);
        it = listeners.upper_bound(listener);
    }
}

void TUTeller::tell() {
    std::set<TUListener*>& listeners = *m_listeners;
    for (auto it = listeners.begin(); it != listeners.end();) {
        TUListener* listener = *it;
        listener->listen(this);
        it = listeners.upper_bound(listener);
    }
}

TUListenerWithAutoDisconnect::TUListenerWithAutoDisconnect()
    : m_tellers(std::make_shared<std::set<TUTeller*>>()) {}

TUListenerWithAutoDisconnect::~TUListenerWithAutoDisconnect() {
    hangUpAll();
}

void TUListenerWithAutoDisconnect::phone(TUTeller* teller) {
    if (!teller) return;
    TUListener::phone(teller);
    m_tellers->insert(teller);
}

void TUListenerWithAutoDisconnect::hangUp(TUTeller* teller) {
    TUListener::hangUp(teller);
    m_tellers->erase(teller);
}

void TUListenerWithAutoDisconnect::hangUpAll() {
    std::set<TUTeller*> tellers;
    tellers.swap(*m_tellers);
    for (TUTeller* teller : tellers)
        TUListener::hangUp(teller);
}

void TUListenerWithAutoDisconnect::tellerDestroyed(TUTeller* teller) {
    m_tellers->erase(teller);
}
