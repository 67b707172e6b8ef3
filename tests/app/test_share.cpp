// Tests of the reference counts and of weak pointers through destruction, disconnection and
// the deliberate assignment rule.
#include <PlumvaleBaseCore/app/UT_Share.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

struct Layer : UT_SharedWeakBase {
    int id = 0;
    explicit Layer(int i) : id(i) {}
};

} // namespace

TEST(UT_ShareBase, CountsReportBeforeIncrementAndAfterDecrement) {
    const UT_ShareBase plain;
    EXPECT_EQ(plain.IncRef(), 0u);
    EXPECT_EQ(plain.IncRef(), 1u);
    EXPECT_EQ(plain.DecRef(), 1u);
    const UT_ShareBase copy(plain); // a copy is a new object
    EXPECT_EQ(copy.GetRefCount(), 0u);
    EXPECT_EQ(plain.DecRef(), 0u);

    const UT_ShareBaseSafe safe;
    EXPECT_EQ(safe.IncRef(), 0u);
    EXPECT_EQ(safe.DecRef(), 0u);
}

TEST(UT_ShareBaseSafe, ConcurrentReferencesBalance) {
    const UT_ShareBaseSafe shared;
    shared.IncRef(); // the owner's reference
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                shared.IncRef();
                shared.DecRef();
            }
        });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(shared.GetRefCount(), 1u);
    EXPECT_EQ(shared.DecRef(), 0u);
}

TEST(UT_WeakPtr, ExpiresWithItsObjectOrOnDisconnection) {
    UT_WeakPtr<Layer> early;
    EXPECT_TRUE(early.expired());
    {
        Layer layer(7);
        early = &layer;
        const UT_WeakPtr<Layer> copy = early;
        ASSERT_EQ(copy.get(), &layer);
        EXPECT_EQ(copy->id, 7);
    }
    EXPECT_TRUE(early.expired()); // the holder outlives the object

    Layer kept(1);
    const UT_WeakPtr<Layer> watcher(&kept);
    kept.disconnectWeakPtrs();
    EXPECT_EQ(watcher.get(), nullptr);
    EXPECT_TRUE(UT_WeakPtr<Layer>(&kept).expired()); // the holder stays disconnected

    // A copy is a new object with its own holder.
    Layer original(2);
    Layer copied(original);
    EXPECT_EQ(UT_WeakPtr<Layer>(&copied).get(), &copied);
    EXPECT_EQ(UT_WeakPtr<Layer>(&original).get(), &original);
}

TEST(UT_WeakPtr, AssignmentAdoptsTheSourceHolder) {
    Layer source(1);
    const UT_WeakPtr<Layer> toSource(&source);
    UT_WeakPtr<Layer> toTargetBefore;
    {
        Layer target(2);
        toTargetBefore = &target;
        target = source;
        // The target's weak pointers are now the source's; those taken before read null.
        EXPECT_EQ(UT_WeakPtr<Layer>(&target).get(), &source);
        EXPECT_TRUE(toTargetBefore.expired());
        EXPECT_EQ(toSource.get(), &source);
    }
    // Destroying the target disconnected the holder it shared with the source.
    EXPECT_TRUE(toSource.expired());
    EXPECT_TRUE(toTargetBefore.expired());
}
