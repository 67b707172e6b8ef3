// pvtool: command-line access to PlumvaleBaseCore (version, CRC-64, timecodes, path remapping,
// special folders, syntax checks, signatures).
#include <PlumvaleBaseCore/PlumvaleBaseCore.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QMetaProperty>

#include <cerrno>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// Error codes handed to the message centre; the smallest one reported is the exit status.
constexpr auto kExitFailure = static_cast<ErrorCode::Type>(1); // a file could not be read
constexpr auto kExitUsage = static_cast<ErrorCode::Type>(2);   // bad command line
constexpr auto kExitSyntax = static_cast<ErrorCode::Type>(3);  // a text with syntax errors

void usage(FILE* out) {
    std::fputs("usage: pvtool [-nologo] [-lang LANGUAGE] [-langdir FOLDER] [--batch] COMMAND\n"
               "       pvtool --version\n"
               "       pvtool crc64 [--] FILE...   (\"-\" reads standard input)\n"
               "       pvtool timecode FRAMES FPS [--hours]\n"
               "       pvtool remap [--config=FILE] [--rules] [--] PATH...\n"
               "       pvtool folders\n"
               "       pvtool lex [--comma] [--] FILE...   (syntax check of text files)\n"
               "       pvtool sign [--] FILE...   (MD5 signatures, as md5sum prints them)\n"
               "-nologo leaves out the banner; -lang and -langdir choose the language and the\n"
               "folder of its translations; --batch logs through the batch message centre and\n"
               "prints its log at the end.\n",
               out);
}

/// The interactive centre of the tool: each report's translation on standard error.
class ConsoleCentre : public TUMessage {
public:
    ConsoleCentre() : TUMessage(QStringLiteral("pvtool"), false, false) {}
    void writeLog(char kind, const QString&, const QString& translated, bool) override {
        if (kind == 'D' || kind == 'T') return;
        std::fprintf(stderr, "pvtool: %s\n", translated.toLocal8Bit().constData());
    }
};

/// Reports an error through the centre with the given code.
void fail(MSG_Text message, ErrorCode::Type code) {
    MSG_Scope scope(message, MSG_Scope::Error, code);
}

/// Parses a whole decimal int; false for anything else (empty, trailing text, overflow).
bool parseInt(const char* text, int& value) {
    if (!text || !*text) return false;
    errno = 0;
    char* end = nullptr;
    const long v = std::strtol(text, &end, 10);
    if (errno != 0 || *end != '\0' || v < INT_MIN || v > INT_MAX) return false;
    value = static_cast<int>(v);
    return true;
}

/// CRC-64 of a whole stream, read in large blocks.
bool crcOfStream(FILE* in, const TUCRC64Calculator& calc, std::uint64_t& crc) {
    std::vector<unsigned char> buffer(1 << 20);
    crc = 0;
    for (;;) {
        const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), in);
        crc = calc.update(crc, buffer.data(), got);
        if (got < buffer.size()) return !std::ferror(in);
    }
}

/// Reports an unknown option as a usage error.
int unknownOption(const char* option) {
    fail(MSG_Text("pvtool", "Unknown option '%1'.").arg(QString::fromLocal8Bit(option)),
         kExitUsage);
    usage(stderr);
    return kExitUsage;
}

/// Whether `arg` looks like an option: "-" alone is a file name (standard input).
bool isOption(const char* arg) {
    return arg[0] == '-' && arg[1] != '\0';
}

/// The files named after the options (from argv[2]); "--" ends the options, and an unknown
/// option or no file at all is a usage error (false, reported).
bool fileArguments(int argc, char** argv, int& first) {
    first = 2;
    if (first < argc && std::strcmp(argv[first], "--") == 0)
        ++first;
    else
        for (int i = first; i < argc; ++i)
            if (isOption(argv[i])) {
                unknownOption(argv[i]);
                return false;
            }
    if (first < argc) return true;
    fail(MSG_Text("pvtool", "No file given."), kExitUsage);
    usage(stderr);
    return false;
}

void failToRead(const char* name, int error) {
    fail(MSG_Text("pvtool", "Cannot read %1: %2")
             .arg(QString::fromLocal8Bit(name),
                  QString::fromLocal8Bit(oswSystemErrorText(error).c_str())),
         kExitFailure);
}

int runCrc64(int argc, char** argv) {
    int first = 0;
    if (!fileArguments(argc, argv, first)) return kExitUsage;
    const TUCRC64Calculator calc;
    for (int i = first; i < argc; ++i) {
        const bool isStdin = std::strcmp(argv[i], "-") == 0;
        FILE* in = isStdin ? stdin : std::fopen(argv[i], "rbe");
        if (!in) {
            failToRead(argv[i], errno);
            continue;
        }
        std::uint64_t crc = 0;
        const bool ok = crcOfStream(in, calc, crc);
        const int readError = errno;
        if (!isStdin) std::fclose(in);
        if (!ok) {
            failToRead(argv[i], readError);
            continue;
        }
        std::printf("%016" PRIx64 "  %s\n", crc, argv[i]);
    }
    return 0;
}

int runTimecode(int argc, char** argv) {
    int frames = 0, fps = 0;
    bool hours = false;
    if (argc == 5 && std::strcmp(argv[4], "--hours") == 0) hours = true;
    if (argc != 4 && !(argc == 5 && hours)) {
        usage(stderr);
        return kExitUsage;
    }
    if (!parseInt(argv[2], frames)) {
        fail(MSG_Text("pvtool", "'%1' is not a whole number of frames.")
                 .arg(QString::fromLocal8Bit(argv[2])),
             kExitUsage);
        return kExitUsage;
    }
    if (!parseInt(argv[3], fps) || fps <= 0) {
        fail(MSG_Text("pvtool", "'%1' is not a positive frame rate.")
                 .arg(QString::fromLocal8Bit(argv[3])),
             kExitUsage);
        return kExitUsage;
    }
    std::printf("%s\n", UT_FormatFrame(frames, fps, hours).utf8().c_str());
    return 0;
}

/// Prints each path and its remapped form, or with --rules the rule table in force.
int runRemap(int argc, char** argv) {
    bool rules = false;
    int i = 2;
    for (; i < argc && isOption(argv[i]); ++i) {
        const std::string option = argv[i];
        if (option == "--") {
            ++i;
            break;
        }
        if (option == "--rules")
            rules = true;
        else if (option.rfind("--config=", 0) == 0)
            oswRemapPath::setConfigFile(QString::fromLocal8Bit(argv[i] + 9));
        else
            return unknownOption(argv[i]);
    }
    if (rules) {
        const QString config = oswRemapPath::configFile();
        std::printf("configuration: %s\n",
                    config.isEmpty() ? "(none)" : config.toLocal8Bit().constData());
        for (const oswRemapPath::Rule& rule : oswRemapPath::rules())
            std::printf("%-8s %s -> %s\n", rule.kind.toLocal8Bit().constData(),
                        rule.from.toLocal8Bit().constData(), rule.to.toLocal8Bit().constData());
    } else if (i >= argc) {
        fail(MSG_Text("pvtool", "No path given."), kExitUsage);
        usage(stderr);
        return kExitUsage;
    }
    for (; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        std::printf("%s -> %s\n", argv[i],
                    oswRemapPath::RemapPath2(path, true).toLocal8Bit().constData());
    }
    return 0;
}

/// Prints every special folder, one per line: its property (accessor) name, then the path.
int runFolders(int argc, char** argv) {
    if (argc > 2) {
        if (isOption(argv[2])) return unknownOption(argv[2]);
        usage(stderr);
        return kExitUsage;
    }
    const BAPP_SpecialFolders* folders = BAPP_SharedSpecialFolders();
    const QMetaObject* meta = folders->metaObject();
    auto print = [](const char* name, const QString& path) {
        std::printf("%-13s %s\n", name, path.toLocal8Bit().constData());
    };
    for (int i = BAPP_SpecialFolders::staticMetaObject.propertyOffset(); i < meta->propertyCount();
         ++i) {
        const QMetaProperty property = meta->property(i);
        print(property.name(), property.read(folders).toString());
    }
    // The two folders that are not properties.
    print("database", folders->database());
    print("help", folders->help());
    return 0;
}

/// Prints each file's MD5 signature in md5sum's layout ("-" reads standard input). An
/// empty file has no PL_FileSignature; its digest, that of no bytes, is printed all the same
/// so that md5sum -c agrees.
int runSign(int argc, char** argv) {
    int first = 0;
    if (!fileArguments(argc, argv, first)) return kExitUsage;
    for (int i = first; i < argc; ++i) {
        QByteArray digest;
        errno = 0;
        if (std::strcmp(argv[i], "-") == 0) {
            QFile in;
            QCryptographicHash md5(QCryptographicHash::Md5);
            if (!in.open(stdin, QIODevice::ReadOnly) || !md5.addData(&in)) {
                failToRead(argv[i], errno);
                continue;
            }
            digest = md5.result();
        } else {
            const PL_FileSpec file{UT_String(QString::fromLocal8Bit(argv[i]))};
            PL_FileSignature signature;
            if (signature.computeSignature(file))
                digest = QByteArray(reinterpret_cast<const char*>(signature.digest()), 16);
            else if (QFile(file.GetFilePath().ToQString()).open(QIODevice::ReadOnly) &&
                     file.GetFileLength() == 0)
                digest = QCryptographicHash::hash(QByteArray(), QCryptographicHash::Md5);
            if (digest.isEmpty()) {
                failToRead(argv[i], errno ? errno : EIO);
                continue;
            }
        }
        std::printf("%s  %s\n", digest.toHex().constData(), argv[i]);
    }
    return 0;
}

/// Reads each file with the lexer; its syntax errors are reported as they are met, and a
/// file with any is an error of its own, naming the file.
int runLex(int argc, char** argv) {
    bool comma = false;
    int i = 2;
    for (; i < argc && isOption(argv[i]); ++i) {
        if (std::strcmp(argv[i], "--") == 0) {
            ++i;
            break;
        }
        if (std::strcmp(argv[i], "--comma") != 0) return unknownOption(argv[i]);
        comma = true;
    }
    if (i >= argc) {
        fail(MSG_Text("pvtool", "No file given."), kExitUsage);
        usage(stderr);
        return kExitUsage;
    }
    for (; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        TULex lex;
        if (comma) lex.setCommaDriven(true);
        if (!lex.openFile(path)) {
            failToRead(argv[i], errno);
            continue;
        }
        long tokens = 0;
        for (; !lex.eof(); lex.get())
            ++tokens;
        if (lex.isError())
            fail(MSG_Text("pvtool", "%1 has syntax errors.").arg(path), kExitSyntax);
        else
            std::printf("%s: %ld tokens, %u lines\n", argv[i], tokens, lex.getLineNo());
    }
    return 0;
}

int run(int argc, char** argv) {
    if (argc < 2) {
        usage(stderr);
        return kExitUsage;
    }
    const std::string command = argv[1];
    if (command == "--version" && argc == 2) {
        std::printf("pvtool (PlumvaleBaseCore) %s, Qt %d\n", PLUMVALE_VERSION_STRING,
                    PLUMVALE_QT_MAJOR_VERSION);
        return 0;
    }
    if (command == "--help" || command == "-h") {
        usage(stdout);
        return 0;
    }
    if (command == "crc64") return runCrc64(argc, argv);
    if (command == "timecode") return runTimecode(argc, argv);
    if (command == "remap") return runRemap(argc, argv);
    if (command == "folders") return runFolders(argc, argv);
    if (command == "lex") return runLex(argc, argv);
    if (command == "sign") return runSign(argc, argv);
    if (isOption(argv[1])) return unknownOption(argv[1]);
    fail(MSG_Text("pvtool", "Unknown command '%1'.").arg(QString::fromLocal8Bit(argv[1])),
         kExitUsage);
    usage(stderr);
    return kExitUsage;
}

/// Installs the library's catalogue for the first preferred language that has one (none is
/// needed from English on). Returns the language asked with -lang when it has none.
QString installCatalogue(const BAPP_Application& app) {
    for (const QString& code : BAPP_Application::languagesPreference()) {
        if (code == QLatin1String("en")) return QString();
        if (UT_LibraryTranslator::install(code)) return QString();
    }
    return app.requestedLanguage().isEmpty() ? QString() : app.requestedLanguage();
}

} // namespace

int main(int argc, char** argv) {
    // The frame consumes its own options; the tool reads what is left, as the bytes given.
    const std::vector<char*> given(argv, argv + argc);
    BAPP_Arguments arguments = BAPP_Application::parseArguments(argc, argv);
    BAPP_Identity::select(QStringLiteral("pvtool"));
    BAPP_CoreApplication app(argc, argv, arguments);
    std::vector<char*> toolArgv{given[0]};
    for (std::size_t i = 1, j = 0; i < given.size() && j < std::size_t(arguments.size()); ++i)
        if (QString::fromUtf8(given[i]) == arguments.at(int(j))) {
            toolArgv.push_back(given[i]);
            ++j;
        }
    const QString missingLanguage = installCatalogue(app);

    // The tool's own global option: --batch.
    bool batch = false;
    std::size_t first = 1;
    for (; first < toolArgv.size() && std::strcmp(toolArgv[first], "--batch") == 0; ++first)
        batch = true;
    if (batch) {
        tuBatchMsg = new TUBatchMessage(QStringLiteral("pvtool"), false, false);
        TUMessage::setInstance(tuBatchMsg);
    } else {
        TUMessage::setInstance(new ConsoleCentre);
    }
    if (!missingLanguage.isNull())
        MSG_Scope(MSG_Text("pvtool", "No catalogue for language '%1': messages stay in English.")
                      .arg(missingLanguage),
                  MSG_Scope::Warning, ErrorCode::NoError);

    toolArgv[first - 1] = toolArgv[0];
    const int status = run(int(toolArgv.size() - first + 1), toolArgv.data() + first - 1);
    // Output that could not be written is an error, as for the standard tools: a full disk
    // or a closed standard output must not end with status 0.
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        fail(MSG_Text("pvtool", "Cannot write the output: %1")
                 .arg(QString::fromLocal8Bit(oswSystemErrorText(errno).c_str())),
             kExitFailure);
    TUMessage* centre = TUMessage::instance();
    if (tuBatchMsg) {
        QCoreApplication::sendPostedEvents();
        for (const QString& entry : tuBatchMsg->getLog())
            std::fprintf(stderr, "%s\n", entry.toLocal8Bit().constData());
    }
    // The centre's code wins; a usage error without a report keeps its own status.
    const int code = centre->getErrorCode();
    TUMessage::releaseInstance();
    return code != 0 ? code : status;
}
