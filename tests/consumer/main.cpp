// Uses the installed library through its umbrella header, as an application would.
#include <PlumvaleBaseCore/PlumvaleBaseCore.h>

#include <QCoreApplication>

#include <cinttypes>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const TUCRC64Calculator calc;
    const auto crc = calc.compute("123456789");
    std::printf("crc64 %08" PRIx32 "%08" PRIx32 "\n", crc.first, crc.second);
    const UT_String text("d\xC3\xA9j\xC3\xA0");
    std::printf("units %u utf8 %s timecode %s\n", text.size(), text.utf8().c_str(),
                UT_FormatFrame(86400, 24).utf8().c_str());
    std::printf("round %d version %s\n", TUMaths::round(-2.5), PLUMVALE_VERSION_STRING);
    // The library's own catalogue must be found in a static build as in a shared one.
    const bool french = UT_LibraryTranslator::install(QStringLiteral("fr"));
    std::printf("french %s\n",
                french
                    ? MSG_Text("pvtool", "No file given.").getTranslatedText().toUtf8().constData()
                    : "missing");
    return text.size() == 4 && french ? 0 : 1;
}
