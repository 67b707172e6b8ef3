// Fuzz target: the text operations of UT_Path, UT_RelPath and PL_FileSpec, with their
// invariants: a normalised path parses to itself, cleaning twice changes nothing, and
// walking up always ends.
//
// Input: byte 0 sets UT_Path's filter (bit 0); the rest is UTF-8 text, split at its first
// zero into a path and a second path (a base or a name).
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/UT_Path.h>
#include <PlumvaleBaseCore/files/UT_RelPath.h>

#include "files/PathText.h"

#include <vector>

namespace {

void checkUtPath(const QString& text, const QString& other, bool filter) {
    UT_Path p(filter);
    if (!p.SetPath(text)) return;
    const QString full = p.GetPath(true);
    UT_Path again(filter);
    const bool reparsed = again.SetPath(full);
    // Unfiltered, a relative name such as "x:y" reads back as the drive "x:" (or fails, for
    // "ab:y"), by design; the filter is what makes the text unambiguous.
    if (filter) FUZZ_CHECK(reparsed && again.GetPath(true) == full);
    const QString folder = p.GetBasePath(false);
    FUZZ_CHECK(UT_Path::cleanPath(folder) == folder);
    FUZZ_CHECK(UT_Path::cleanPath(UT_Path::cleanPath(text)) == UT_Path::cleanPath(text));

    UT_Path edited = p;
    edited.AddFolder(other);
    edited.SetFileName(other);
    edited.SetExtension(other);
    edited.AddName(other);
    // Each step up shortens the text or fails; it must fail before the text runs out.
    int steps = 0;
    for (UT_Path up = edited; up.Up(); ++steps)
        FUZZ_CHECK(steps <= edited.GetPath(true).size() + 2);
}

void checkRelPath(const UT_String& text, const UT_String& other) {
    const UT_RelPath r(text);
    FUZZ_CHECK(UT_RelPath(r.ToString()) == r);
    UT_RelPath joined = r;
    joined.Add(other);
    joined.SetExtension(other);
    UT_RelPath rel;
    rel.makeRelativeToPath(r, UT_RelPath(other));
    rel.fillRelativePath(UT_RelPath(other));
    int steps = 0;
    for (UT_RelPath up = joined; !up.IsEmpty(); up.Up(), ++steps)
        FUZZ_CHECK(steps <= int(joined.ToString().size()) + 1);
}

/// A path rebuilt from its root and its components, "." dropped and ".." applied, joined
/// as a file specification joins them: the same place always gives the same text.
UT_String canonical(const UT_String& path) {
    const std::size_t root = plumvale::files::rootLength(path);
    std::vector<UT_String> parts;
    UT_String::size_type i = UT_String::size_type(root);
    while (i <= path.size()) {
        UT_String::size_type j = path.find(u'/', i);
        if (j == UT_String::npos) j = path.size();
        const UT_String part = path.substr(i, j - i);
        if (part == UT_String(u"..")) {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != UT_String(u".")) {
            parts.push_back(part);
        }
        i = j + 1;
    }
    UT_String out = path.substr(0, UT_String::size_type(root));
    const bool bareDrive = root == 2 && path[1] == u':';
    for (const UT_String& part : parts) {
        if (!out.empty() && out.back() != u'/' && !(bareDrive && out.size() == 2)) out += u'/';
        out += part;
    }
    return out;
}

void checkFileSpec(const UT_String& text, const UT_String& other) {
    const PL_FileSpec fileSpec(text);
    FUZZ_CHECK(PL_FileSpec(fileSpec.GetFilePath()).GetFilePath() == fileSpec.GetFilePath());
    (void)fileSpec.GetName(false);
    (void)fileSpec.GetExtension();
    (void)fileSpec.IsShare();
    PL_FileSpec joined;
    joined.IFileSpec(other, fileSpec);
    FUZZ_CHECK(PL_FileSpec(joined.GetFilePath()).GetFilePath() == joined.GetFilePath());
    // The relative path from the base leads back to the same place. GetRelativePath compares
    // components as written, so this holds for paths without "." and ".." components and
    // doubled '/' (a file specification keeps those as given).
    UT_String relative;
    if (fileSpec.IsValid() && canonical(fileSpec.GetFilePath()) == fileSpec.GetFilePath() &&
        canonical(joined.GetFilePath()) == joined.GetFilePath() &&
        joined.GetRelativePath(relative, fileSpec) == 0) {
        PL_FileSpec back;
        back.IFileSpec(relative, fileSpec);
        FUZZ_CHECK(canonical(back.GetFilePath()) == canonical(joined.GetFilePath()));
    }
    int steps = 0;
    for (PL_FileSpec up = joined; up.Up(); ++steps)
        FUZZ_CHECK(steps <= int(joined.GetFilePath().size()) + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    const bool filter = data[0] & 1;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    const int zero = bytes.indexOf('\0');
    const QString text = QString::fromUtf8(zero < 0 ? bytes : bytes.left(zero));
    const QString other = zero < 0 ? QString() : QString::fromUtf8(bytes.mid(zero + 1));
    checkUtPath(text, other, filter);
    checkRelPath(UT_String(text), UT_String(other));
    checkFileSpec(UT_String(text), UT_String(other));
    return 0;
}
