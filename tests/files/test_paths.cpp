// Table-driven tests of the path text rules of UT_Path and UT_RelPath.
#include <PlumvaleBaseCore/files/UT_Path.h>
#include <PlumvaleBaseCore/files/UT_RelPath.h>

#include <gtest/gtest.h>

namespace {

QString q(const char* s) {
    return QString::fromUtf8(s);
}
std::string s(const QString& t) {
    return t.toStdString();
}
std::string s(const UT_String& t) {
    return t.utf8();
}

} // namespace

TEST(UT_Path, ParsingTable) {
    struct Case {
        const char* input;
        bool filter;
        bool ok;
        const char *drive, *folder, *name, *full;
    };
    const Case cases[] = {
        {"C:\\dir\\file.txt", true, true, "C:", "/dir/", "file.txt", "C:/dir/file.txt"},
        {"\\\\srv\\share\\x", true, true, "//srv/share", "/", "x", "//srv/share/x"},
        {"C:", true, true, "C:", "/", "", "C:"},
        {"/a/b/", true, true, "", "/a/b/", "", "/a/b"},
        {"/", true, true, "", "/", "", "/"},
        {"a<b>.txt", true, true, "", "", "a_b_.txt", "a_b_.txt"},
        {"C:/x:y/z", true, true, "C:", "/x_y/", "z", "C:/x_y/z"},
        {"/d/a<b>.txt", false, true, "", "/d/", "a<b>.txt", "/d/a<b>.txt"},
        {"/a/./b//../c/f", false, true, "", "/a/c/", "f", "/a/c/f"},
        {"ab:/x", true, false, "", "", "", ""},
        {"a/../../b/f", true, true, "", "../b/", "f", "../b/f"},
        {"/../x/", true, true, "", "/../x/", "", "/../x"},
        {"//srv-1/\u00e9t\u00e9/y", true, true, "//srv-1/\u00e9t\u00e9", "/", "y",
         "//srv-1/\u00e9t\u00e9/y"},
        {"rel/dir/name.ext", true, true, "", "rel/dir/", "name.ext", "rel/dir/name.ext"},
        {"./file", true, true, "", "", "file", "file"},
        // A drive is kept when its folder cleans away to nothing.
        {"C:./", true, true, "C:", "/", "", "C:"},
        {"C:./x", true, true, "C:", "/", "x", "C:/x"},
        {"C:a/../x", true, true, "C:", "/", "x", "C:/x"},
        // Share names are read by code point: U+1D400 is a letter outside the BMP.
        {"//srv/sh\U0001D400re/x", true, true, "//srv/sh\U0001D400re", "/", "x",
         "//srv/sh\U0001D400re/x"},
        {"//\U0001D7D8/s", true, true, "//\U0001D7D8/s", "/", "", "//\U0001D7D8/s"},
    };
    for (const Case& c : cases) {
        UT_Path p(c.filter);
        EXPECT_EQ(p.SetPath(q(c.input)), c.ok) << c.input;
        if (!c.ok) {
            EXPECT_TRUE(p.IsEmpty()) << c.input;
            continue;
        }
        EXPECT_EQ(s(p.GetDrive()), c.drive) << c.input;
        EXPECT_EQ(s(p.GetBasePath(false)), c.folder) << c.input;
        EXPECT_EQ(s(p.GetFileName()), c.name) << c.input;
        EXPECT_EQ(s(p.GetPath(true)), c.full) << c.input;
    }
}

TEST(UT_Path, NamesExtensionsAndComparison) {
    UT_Path p(q("/data/scene.old.txt"));
    EXPECT_EQ(s(p.GetExtension(false)), "txt");
    EXPECT_EQ(s(p.GetExtension(true)), "old.txt");
    EXPECT_EQ(s(p.GetBaseName(false)), "scene.old");
    EXPECT_EQ(s(p.GetBaseName(true)), "scene");
    EXPECT_EQ(p, UT_Path(q("/data/other.png"))); // names are not compared, on purpose
    EXPECT_NE(p, UT_Path(q("/date/scene.old.txt")));
    EXPECT_TRUE(UT_Path(q("/a/")) < UT_Path(q("/b/")));

    EXPECT_TRUE(p.SetExtension(q(".png"), false));
    EXPECT_EQ(s(p.GetFileName()), "scene.old.png");
    EXPECT_TRUE(p.SetExtension(q("tar.gz"), true));
    EXPECT_EQ(s(p.GetFileName()), "scene.tar.gz");
    EXPECT_FALSE(p.SetExtension(q("a b"), true));
    EXPECT_FALSE(p.SetExtension(q(""), true));
    EXPECT_EQ(s(p.GetFileName()), "scene.tar.gz");
    UT_Path bare(q("/d/noext"));
    EXPECT_TRUE(bare.SetExtension(q("\u00e9t\u00e9"), false)); // \w covers Unicode letters
    EXPECT_EQ(s(bare.GetFileName()), "noext.\u00e9t\u00e9");
    EXPECT_TRUE(bare.AddExtension(q("bak")));
    EXPECT_EQ(s(bare.GetFileName()), "noext.\u00e9t\u00e9.bak");
}

TEST(UT_Path, EditingOperations) {
    UT_Path p(q("C:/a/b/file.txt"));
    EXPECT_FALSE(p.AddName(q("/abs")));
    EXPECT_TRUE(p.AddName(q("inner")));
    EXPECT_EQ(s(p.GetPath(true)), "C:/a/b/file.txt/inner");
    EXPECT_TRUE(p.Up());
    EXPECT_EQ(s(p.GetPath(true)), "C:/a/b/file.txt");
    EXPECT_TRUE(p.Up()); // a folder path first loses only its trailing '/'
    EXPECT_EQ(s(p.GetBasePath(false)), "/a/b/file.txt");
    EXPECT_TRUE(p.Up());
    EXPECT_EQ(s(p.GetBasePath(false)), "/a/b");
    EXPECT_TRUE(p.Up());
    EXPECT_EQ(s(p.GetBasePath(false)), "/a");
    EXPECT_TRUE(p.Up());
    EXPECT_EQ(s(p.GetBasePath(false)), "/");
    EXPECT_FALSE(p.Up());

    UT_Path f(q("/x/y/name"));
    EXPECT_TRUE(f.SetFolderPath(q("/other/dropped")));
    EXPECT_EQ(s(f.GetPath(true)), "/other/name");
    EXPECT_TRUE(f.SetFolder(q("/p/q")));
    EXPECT_TRUE(f.IsFolderPath());
    EXPECT_EQ(s(f.GetPath(true)), "/p/q");
    EXPECT_TRUE(f.AddFolder(q("r/../s")));
    EXPECT_EQ(s(f.GetBasePath(false)), "/p/q/s/");
    EXPECT_FALSE(f.AddFolder(q("/abs")));
    EXPECT_TRUE(f.SetDrive(q("D:")));
    EXPECT_EQ(s(f.GetPath(true)), "D:/p/q/s");
    EXPECT_FALSE(f.SetDrive(q("DD:")));
    UT_Path rel(q("rel/x"));
    EXPECT_TRUE(rel.IsRelative());
    EXPECT_FALSE(rel.SetDrive(q("C:")));
    EXPECT_FALSE(UT_Path().IsRelative());

    UT_Path other(q("D:/w/"));
    UT_Path sub(q("D:/w/"));
    EXPECT_FALSE(other.AddFolder(UT_Path(q("E:/k/"))));
    EXPECT_TRUE(sub.SetFileName(q("a?b")));
    EXPECT_EQ(s(sub.GetFileName()), "a_b");
    EXPECT_FALSE(sub.SetFileName(q("a/b")));

    // A path without a drive keeps the current one when it is absolute.
    UT_Path keep(q("C:/one/"));
    EXPECT_TRUE(keep.SetPath(q("/two/")));
    EXPECT_EQ(s(keep.GetPath(true)), "C:/two");
}

TEST(UT_Path, CleanPathExamples) {
    struct Case {
        const char *in, *out;
    };
    const Case cases[] = {{"/a/./b//../c/", "/a/c/"},
                          {"a/../../b/", "../b/"},
                          {"/../x/", "/../x/"},
                          {"/", "/"},
                          {"", ""},
                          {"a/..", ""},
                          {"/a/..", "/"},
                          {"x/y/z/../../w", "x/w/"}};
    for (const Case& c : cases)
        EXPECT_EQ(s(UT_Path::cleanPath(q(c.in))), c.out) << c.in;
}

TEST(UT_RelPath, ValidationAndEditing) {
    struct Case {
        const char *in, *out;
    };
    const Case cases[] = {{"./a/b/", "a/b"}, {"/", "/"},       {"a\\b<c", "a/b_c"},
                          {"./", ""},        {".//x", "x"},    {"c:/x//", "c:/x"},
                          {"x?*\"", "x___"}, {"././bA", "bA"}, {"././/./", ""}};
    for (const Case& c : cases)
        EXPECT_EQ(s(UT_RelPath(UT_String(c.in)).ToString()), c.out) << c.in;

    UT_RelPath r(UT_String("x.dir/file"));
    EXPECT_EQ(s(r.GetExtension()), "");
    r.SetExtension(UT_String("png"));
    EXPECT_EQ(s(r.ToString()), "x.dir/file.png");
    EXPECT_EQ(s(r.GetBaseName()), "file");
    r.SetExtension(UT_String("jpg"));
    EXPECT_EQ(s(r.ToString()), "x.dir/file.jpg");
    r.ReplaceOrAddExtension({UT_String("png"), UT_String("jpg")}, UT_String("tif"));
    EXPECT_EQ(s(r.ToString()), "x.dir/file.tif");
    r.ReplaceOrAddExtension({UT_String("png")}, UT_String("bak"));
    EXPECT_EQ(s(r.ToString()), "x.dir/file.tif.bak");
    r.SetFilename(UT_String("n.e"));
    EXPECT_EQ(s(r.ToString()), "x.dir/n.e");
    EXPECT_EQ(s(UT_RelPath(UT_String("a.")).GetExtension()), "");
    r.Up();
    EXPECT_EQ(s(r.ToString()), "x.dir");
    r.Up();
    EXPECT_TRUE(r.IsEmpty());
    r += UT_RelPath(UT_String("p"));
    r.Add(UT_String("q"));
    EXPECT_EQ(s((r + UT_RelPath(UT_String("z/"))).ToString()), "p/q/z");
}

TEST(UT_RelPath, RelativePathsBetweenFolders) {
    struct Case {
        const char *target, *base, *out;
    };
    const Case cases[] = {{"a/x/y", "a/b/c", "../../x/y"},
                          {"a/b/c/d", "a/b", "c/d"},
                          {"a/b", "a/b/c", ".."},
                          {"q", "a", "../q"}};
    for (const Case& c : cases) {
        UT_RelPath r;
        r.makeRelativeToPath(UT_RelPath(UT_String(c.target)), UT_RelPath(UT_String(c.base)));
        EXPECT_EQ(s(r.ToString()), c.out) << c.target << " from " << c.base;
    }
    UT_RelPath partial(UT_String("m/n"));
    partial.fillRelativePath(UT_RelPath(UT_String("a/b/c/d")));
    EXPECT_EQ(s(partial.ToString()), "m/n/c/d");
}
