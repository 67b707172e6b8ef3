// tufile::updateFile: text replacement inside a file, written through the safe replacement.
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/tufile.h>

#include "files/FileSystem.h"
#include "files/tufileSupport.h"

#include <QByteArray>

namespace sys = plumvale::files;
using namespace plumvale::files::tufileSupport;

namespace {

// Replaces every `from` in `text` by `to`, left to right without overlap; the count.
template <typename Text>
int replaceAll(Text& text, const Text& from, const Text& to) {
    if (from.isEmpty()) return 0;
    Text out;
    int count = 0;
    decltype(text.size()) pos = 0;
    for (auto hit = text.indexOf(from); hit >= 0; hit = text.indexOf(from, pos)) {
        out += text.mid(pos, hit - pos);
        out += to;
        pos = hit + from.size();
        ++count;
    }
    if (count == 0) return 0;
    out += text.mid(pos);
    text = out;
    return count;
}

enum class Encoding { Utf8, Utf16Le, Utf16Be };

Encoding encodingOf(const QByteArray& bytes) {
    if (bytes.startsWith("\xFF\xFE")) return Encoding::Utf16Le;
    if (bytes.startsWith("\xFE\xFF")) return Encoding::Utf16Be;
    return Encoding::Utf8;
}

// The UTF-16 units after the byte-order mark, in the file's order (a last odd byte is kept
// apart so that it is written back unchanged).
QString unitsOf(const QByteArray& bytes, bool bigEndian, QByteArray& oddTail) {
    const auto units = (bytes.size() - 2) / 2;
    QString text(units, Qt::Uninitialized);
    for (decltype(bytes.size()) i = 0; i < units; ++i) {
        const auto a = static_cast<unsigned char>(bytes.at(2 + 2 * i));
        const auto b = static_cast<unsigned char>(bytes.at(3 + 2 * i));
        text[i] = QChar(static_cast<char16_t>(bigEndian ? (a << 8 | b) : (b << 8 | a)));
    }
    oddTail = bytes.mid(2 + 2 * units);
    return text;
}

QByteArray bytesOf(const QString& text, bool bigEndian, const QByteArray& oddTail) {
    QByteArray bytes(bigEndian ? "\xFE\xFF" : "\xFF\xFE");
    bytes.reserve(2 + 2 * text.size() + oddTail.size());
    for (const QChar c : text) {
        const char hi = static_cast<char>(c.unicode() >> 8), lo = static_cast<char>(c.unicode());
        bytes.append(bigEndian ? hi : lo);
        bytes.append(bigEndian ? lo : hi);
    }
    return bytes + oddTail;
}

int replaceIn(QByteArray& content, const std::vector<tufile::TextPair>& pairs) {
    int count = 0;
    const Encoding encoding = encodingOf(content);
    if (encoding == Encoding::Utf8) {
        for (const auto& [from, to] : pairs)
            count += replaceAll(content, from.toUtf8(), to.toUtf8());
        return count;
    }
    const bool bigEndian = encoding == Encoding::Utf16Be;
    QByteArray oddTail;
    QString text = unitsOf(content, bigEndian, oddTail);
    for (const auto& [from, to] : pairs)
        count += replaceAll(text, from, to);
    if (count > 0) content = bytesOf(text, bigEndian, oddTail);
    return count;
}

} // namespace

namespace tufile {

int updateFile(const QString& file, const std::vector<TextPair>& pairs) {
    UT_LogIO::add(UT_Log::Update, file);
    const MSG_Text failure = message("Cannot update file \"%1\".").arg(file);
    const PL_FileSpec target{UT_String(prepared(file))};
    QByteArray content;
    if (!sys::readWholeFile(target.GetFilePath(), content)) fail(failure);
    const int count = replaceIn(content, pairs);
    if (count == 0) return 0;
    const PL_FileSpec fresh = PL_FileUtil::NewFileSpec(target);
    if (sys::writeWholeFile(fresh.GetFilePath(), content, target.GetFilePath()) != 0 ||
        !PL_FileUtil::BackupFile(target)) {
        fresh.Delete();
        fail(failure);
    }
    if (!PL_FileUtil::RenameNewFile(target)) {
        PL_FileUtil::RestoreBackupFile(target, true);
        fresh.Delete();
        fail(failure);
    }
    sys::removeFile(UT_String(target.GetFilePath().ToQString() + QLatin1Char('~')));
    return count;
}

int updateFile(const QString& file, const QString& from, const QString& to) {
    return updateFile(file, std::vector<TextPair>{{from, to}});
}

} // namespace tufile
