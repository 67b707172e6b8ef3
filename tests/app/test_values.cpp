// Tests of the small value types: identifiers, time units, dynamic keys and tri-states.
#include <PlumvaleBaseCore/app/UT_DynKey.h>
#include <PlumvaleBaseCore/app/UT_Id.h>
#include <PlumvaleBaseCore/app/UT_TimeUnits.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

TEST(UT_Id, TextFormAndOrdering) {
    EXPECT_EQ(UT_Id(-1).AsString(), "ffffffffffffffff");
    EXPECT_EQ(UT_IdZero().AsString(), "0000000000000000");
    EXPECT_EQ(UT_Id::FromString("ffffffffffffffff"), UT_Id(-1));
    EXPECT_EQ(UT_Id::FromString("0000000000000000"), UT_IdZero());
    // A non-hexadecimal character ends its word's scan; a missing word is 0.
    EXPECT_EQ(UT_Id::FromString("0000001g00000002").value(), (1LL << 32) | 2);
    EXPECT_EQ(UT_Id::FromString("12").value(), 0x12LL << 32);
    EXPECT_EQ(UT_Id::FromString("").value(), 0);
    EXPECT_EQ(UT_Id::FromString("ABCDEF0100000000").value(),
              static_cast<long long>(0xabcdef0100000000ULL));

    std::mt19937_64 random(7);
    for (int i = 0; i < 1000; ++i) {
        long long v = static_cast<long long>(random());
        const UT_Id id = UT_Id::FromtInt64(v);
        const std::string text = id.AsString();
        ASSERT_EQ(text.size(), 16u);
        EXPECT_EQ(UT_Id::FromString(text), id);
        long long w = static_cast<long long>(random());
        const UT_Id other = UT_Id::FromtInt64(w);
        EXPECT_EQ(id < other, v < w) << text; // the signed high word leads
        EXPECT_EQ(id > other, v > w);
    }
    EXPECT_TRUE(UT_Id(-1) < UT_IdZero());
    long long lowOnly = 0xffffffffLL;
    EXPECT_TRUE(UT_IdZero() < UT_Id::FromtInt64(lowOnly)); // the low word is unsigned

    std::ostringstream out;
    out << std::setw(20) << std::setfill('*');
    UT_Id(255).write(out);
    EXPECT_EQ(out.str(), "****00000000000000ff");
}

TEST(UT_Id, UniqueAcrossThreadsAndConsecutiveInOne) {
    const UT_Id first;
    const UT_Id second;
    EXPECT_EQ(second.value() - first.value(), 1);

    constexpr int kThreads = 8, kEach = 125000; // a million in all
    std::vector<std::vector<long long>> made(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&made, t] {
            made[t].reserve(kEach);
            for (int i = 0; i < kEach; ++i)
                made[t].push_back(UT_Id().value());
        });
    for (std::thread& t : threads)
        t.join();
    std::vector<long long> all;
    for (const auto& part : made) {
        // Each thread sees its identifiers grow, whatever the others do.
        EXPECT_TRUE(std::is_sorted(part.begin(), part.end()));
        all.insert(all.end(), part.begin(), part.end());
    }
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.size(), std::size_t(kThreads) * kEach);
}

TEST(UT_TimeUnits, NumberingSystems) {
    UT_TimeUnits* units = UT_TimeUnits::GetInstance();
    EXPECT_EQ(units, UT_TimeUnits::GetInstance());
    EXPECT_EQ(units->GetNumberingSystem(), UT_TimeUnits::eTimeUnitsFrames);
    struct Case {
        UT_TimeUnits::eTimeUnits units;
        int colors, labelDelta, colorDelta;
        // cells 0, 7, 8, 9, 15, 16, 19: colour index, labelled, label
        int colorIndex[7];
        bool labelled[7];
        const char* labels[7];
    } cases[] = {
        {UT_TimeUnits::eTimeUnitsPlain,
         1,
         10,
         10,
         {0, 0, 0, 0, 0, 0, 0},
         {false, false, false, false, false, false, false},
         {"1", "8", "9", "10", "16", "17", "20"}},
        {UT_TimeUnits::eTimeUnitsFrames,
         2,
         10,
         10,
         {0, 0, 0, 1, 0, 0, 1},
         {false, false, false, true, false, false, true},
         {"1", "8", "9", "10", "16", "17", "20"}},
        {UT_TimeUnits::eTimeUnitsFeetFrames,
         2,
         16,
         8,
         {1, 1, 0, 0, 0, 1, 1},
         {false, false, false, false, true, false, false},
         {"0:1", "0:8", "0:9", "0:10", "1:0", "1:1", "1:4"}},
    };
    const int cells[7] = {0, 7, 8, 9, 15, 16, 19};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.units);
        units->SetNumberingSystem(c.units);
        EXPECT_EQ(units->GetNbColors(), c.colors);
        EXPECT_EQ(units->GetLabelDelta(), c.labelDelta);
        EXPECT_EQ(units->GetColorDelta(), c.colorDelta);
        for (int k = 0; k < 7; ++k) {
            EXPECT_EQ(units->GetCellColorIndex(cells[k]), c.colorIndex[k]) << cells[k];
            EXPECT_EQ(units->ShouldLabelCell(cells[k]), c.labelled[k]) << cells[k];
            UT_String label;
            units->GetFrameLabel(cells[k], label);
            EXPECT_EQ(label.utf8(), c.labels[k]) << cells[k];
        }
    }
    units->SetNumberingSystem(UT_TimeUnits::eTimeUnitsFrames);
    UT_String last;
    units->GetFrameLabel(2147483647, last); // the last cell still has a successor
    EXPECT_EQ(last.utf8(), "2147483648");
}

TEST(UT_TriState, StatesAndCombination) {
    EXPECT_TRUE(UT_TriState().isUnset());
    EXPECT_TRUE(UT_TriState(-3).isOff() && UT_TriState(0).isOff() && UT_TriState(2).isOn());
    EXPECT_TRUE(UT_TriState(true).combine(UT_TriState(true)).isOn());
    EXPECT_TRUE(UT_TriState(true).combine(UT_TriState()).isUnset());
    EXPECT_TRUE(UT_TriState(false).combine(UT_TriState(true)).isUnset());

    const UT_DynKey a, b;
    EXPECT_EQ(b.value(), a.value() + 1);
    EXPECT_GE(a.value(), 1);
}
