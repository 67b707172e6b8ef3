// Tests of the argument list, its iterator and the consuming loop option parsers use.
#include <PlumvaleBaseCore/app/BAPP_Application.h>
#include <PlumvaleBaseCore/app/BAPP_Arguments.h>

#include <gtest/gtest.h>

namespace {

// The loop every parser of the family runs: "-v VALUE" takes a value, "-f" is a flag.
QStringList consume(QStringList given, QString& value, int& flags) {
    BAPP_Arguments args(given);
    for (BAPP_ArgumentIterator it = args.begin(); it.hasMoreArgument(1);) {
        if (*it == QLatin1String("-v") && it.hasMoreArgument(2)) {
            value = it[1];
            it.handled(2);
        } else if (*it == QLatin1String("-f")) {
            ++flags;
            it.handled(1);
        } else {
            ++it;
        }
    }
    return args.list();
}

} // namespace

TEST(BAPP_Arguments, ConsumingLoopTakesKnownOptionsAndLeavesTheRest) {
    struct Case {
        QStringList given, left;
        QString value;
        int flags;
    } cases[] = {
        {{"-v", "fr", "-f", "x"}, {"x"}, "fr", 1},
        {{"a", "-v"}, {"a", "-v"}, "", 0}, // a value option standing last stays
        {{"-f", "-f", "-v", "1", "b", "-v", "2"}, {"b"}, "2", 2},
        {{"-v", "-f"}, {}, "-f", 0}, // the value is taken as it is, even an option's name
        {{}, {}, "", 0},
    };
    for (const Case& c : cases) {
        QString value;
        int flags = 0;
        EXPECT_EQ(consume(c.given, value, flags), c.left) << c.given.join(' ').toStdString();
        EXPECT_EQ(value, c.value);
        EXPECT_EQ(flags, c.flags);
    }
}

TEST(BAPP_Arguments, OutOfRangeReadsAreEmptyAndErasesDoNothing) {
    BAPP_Arguments args(QStringList{"a", "b"});
    EXPECT_EQ(args[1], "b");
    EXPECT_TRUE(args[2].isEmpty());
    EXPECT_TRUE(args.at(1000).isEmpty());
    args.erase(2);
    EXPECT_EQ(args.count(), 2);

    BAPP_ArgumentIterator last(&args, 1);
    EXPECT_EQ(last[0], "b");
    EXPECT_TRUE(last[1].isEmpty());
    EXPECT_FALSE(last.hasMoreArgument(2));
    last.handled(2); // only what exists goes
    EXPECT_EQ(args.list(), QStringList{"a"});
    EXPECT_TRUE(last == args.end());
    EXPECT_TRUE(args.end().hasMoreArgument(0));
    EXPECT_FALSE(args.end().hasMoreArgument(1));
    EXPECT_TRUE(*args.end() == QString());
    last.handled(0);
    EXPECT_EQ(args.size(), 1);

    BAPP_Arguments copy = args; // copies part once either changes
    copy.erase(0);
    EXPECT_EQ(args.list(), QStringList{"a"});
    EXPECT_TRUE(copy.begin() != args.begin()); // iterators compare their list too
}

TEST(BAPP_Arguments, ParseSkipsTheProgramNameAndReadsUtf8) {
    char program[] = "tool", accented[] = "caf\xc3\xa9", plain[] = "-nologo";
    char* argv[] = {program, accented, plain, nullptr};
    const BAPP_Arguments args = BAPP_Application::parseArguments(3, argv);
    EXPECT_EQ(args.list(), (QStringList{QString::fromUtf8("caf\xc3\xa9"), "-nologo"}));
}
