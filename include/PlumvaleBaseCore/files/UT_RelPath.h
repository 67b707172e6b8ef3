// UT_RelPath: a light relative path in one UT_String with '/' as the only separator.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <vector>

/// A relative path. Every assignment validates the text: '\' becomes '/', >, <, ", ? and *
/// become '_' (':' is kept), trailing '/' are dropped (a lone "/" stays) and a leading "./"
/// is removed. Comparisons are exact on the code units.
class PLUMVALE_EXPORT UT_RelPath {
public:
    UT_RelPath() = default;
    UT_RelPath(const UT_String& text) { SetString(text); }
    UT_RelPath& operator=(const UT_String& text) {
        SetString(text);
        return *this;
    }
    void SetString(const UT_String& text);

    const UT_String& ToString() const { return m_text; }
    bool IsEmpty() const { return m_text.empty(); }
    bool operator==(const UT_RelPath& o) const { return m_text == o.m_text; }
    bool operator!=(const UT_RelPath& o) const { return !(m_text == o.m_text); }
    bool operator<(const UT_RelPath& o) const { return m_text < o.m_text; }

    /// Appends "/" + other (or takes the other text when this one is empty).
    UT_RelPath& Add(const UT_RelPath& other) { return Add(other.m_text); }
    UT_RelPath& Add(const UT_String& other);
    UT_RelPath& operator+=(const UT_RelPath& other) { return Add(other); }
    UT_RelPath operator+(const UT_RelPath& other) const;

    /// Erases from the last '/' on; a text without '/' becomes empty.
    void Up();
    UT_String GetFilename() const;
    UT_String GetBaseName() const;
    UT_String GetExtension() const;
    void SetFilename(const UT_String& name);
    void SetExtension(const UT_String& ext);
    void AddExtension(const UT_String& ext);
    void ReplaceOrAddExtension(const std::vector<UT_String>& known, const UT_String& ext);

    /// Sets this to the path that leads from `base` to `target` ("../" per section of the base
    /// beyond the common ones, then the target's remaining sections).
    void makeRelativeToPath(const UT_RelPath& target, const UT_RelPath& base);
    /// Completes this path from `other`: the sections of `other` beyond those this path
    /// already has are appended.
    void fillRelativePath(const UT_RelPath& other);

private:
    UT_String m_text;
};
