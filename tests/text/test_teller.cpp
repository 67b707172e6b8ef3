// Tests of tellers and listeners: notification, hang-ups, and destruction in either order.
#include <PlumvaleBaseCore/text/TUTeller.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

struct Teller : TUTeller {
    void announce() { tell(); }
};

struct Counter : TUListener {
    void listen(TUTeller*) override { ++heard; }
    int heard = 0;
};

struct AutoCounter : TUListenerWithAutoDisconnect {
    void listen(TUTeller* teller) override {
        ++heard;
        if (leaveWhenTold) hangUp(teller);
    }
    int heard = 0;
    bool leaveWhenTold = false;
};

} // namespace

TEST(TUTeller, PhoningTwiceIsToldOnceAndHangUpStops) {
    Teller teller;
    Counter listener;
    listener.phone(&teller);
    listener.phone(&teller);
    teller.announce();
    EXPECT_EQ(listener.heard, 1);
    listener.hangUp(&teller);
    teller.announce();
    EXPECT_EQ(listener.heard, 1);
}

TEST(TUTeller, HangUpAllReachesEveryTeller) {
    Teller a, b;
    AutoCounter listener;
    listener.phone(&a);
    listener.phone(&b);
    a.announce();
    b.announce();
    listener.hangUpAll();
    a.announce();
    b.announce();
    EXPECT_EQ(listener.heard, 2);
}

TEST(TUTeller, TellerDiesFirstThenListener) {
    auto listener = std::make_unique<AutoCounter>();
    {
        Teller teller;
        listener->phone(&teller);
        teller.announce();
    }
    listener.reset(); // must not touch the freed teller (checked under ASan)
    SUCCEED();
}

TEST(TUTeller, ListenerDiesFirstThenTeller) {
    Teller teller;
    Counter plain;
    plain.phone(&teller);
    {
        AutoCounter transient;
        transient.phone(&teller);
        teller.announce();
        EXPECT_EQ(transient.heard, 1);
    }
    teller.announce(); // the dead listener is gone from the set
    EXPECT_EQ(plain.heard, 2);
    plain.hangUp(&teller);
}

TEST(TUTeller, ListenersLeavingWhileToldDoNotStopTheOthers) {
    Teller teller;
    AutoCounter listeners[4];
    for (AutoCounter& l : listeners) {
        l.leaveWhenTold = true;
        l.phone(&teller);
    }
    teller.announce();
    teller.announce();
    for (const AutoCounter& l : listeners)
        EXPECT_EQ(l.heard, 1);
}
