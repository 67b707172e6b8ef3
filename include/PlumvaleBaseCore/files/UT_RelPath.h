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
    /// @{
    /// An empty path, or `text` validated as the class comment says (construction, assignment
    /// and SetString alike).
    UT_RelPath() = default;
    UT_RelPath(const UT_String& text) { SetString(text); }
    UT_RelPath& operator=(const UT_String& text) {
        SetString(text);
        return *this;
    }
    void SetString(const UT_String& text);
    /// @}

    /// @{
    /// The validated text; whether it is empty; exact ordinal comparisons of the texts.
    const UT_String& ToString() const { return m_text; }
    bool IsEmpty() const { return m_text.empty(); }
    bool operator==(const UT_RelPath& o) const { return m_text == o.m_text; }
    bool operator!=(const UT_RelPath& o) const { return !(m_text == o.m_text); }
    bool operator<(const UT_RelPath& o) const { return m_text < o.m_text; }
    /// @}

    /// @{
    /// Appends "/" + other as it is, not validated again (or takes the other text when this
    /// one is empty).
    UT_RelPath& Add(const UT_RelPath& other) { return Add(other.m_text); }
    UT_RelPath& Add(const UT_String& other);
    /// @}
    /// @{
    /// Add() in place; the binary form always puts a '/' between the two texts and validates
    /// the result (so an empty left side gives "/" + other).
    UT_RelPath& operator+=(const UT_RelPath& other) { return Add(other); }
    UT_RelPath operator+(const UT_RelPath& other) const;
    /// @}

    /// Erases from the last '/' on; a text without '/' becomes empty.
    void Up();
    /// @{
    /// The text after the last '/' (the whole text without one); that name cut at its last
    /// '.'; the text after the last '.' of the name, empty when there is none or it ends the
    /// text.
    UT_String GetFilename() const;
    UT_String GetBaseName() const;
    UT_String GetExtension() const;
    /// @}
    /// @{
    /// Edits of the last section: SetFilename replaces it and validates again; SetExtension
    /// replaces the extension (or appends "." + ext; an empty ext removes it);
    /// AddExtension appends "." + ext (nothing for an empty ext); ReplaceOrAddExtension
    /// replaces the extension when it is one of `known`, else appends.
    void SetFilename(const UT_String& name);
    void SetExtension(const UT_String& ext);
    void AddExtension(const UT_String& ext);
    void ReplaceOrAddExtension(const std::vector<UT_String>& known, const UT_String& ext);
    /// @}

    /// Sets this to the path that leads from `base` to `target` ("../" per section of the base
    /// beyond the common ones, then the target's remaining sections).
    void makeRelativeToPath(const UT_RelPath& target, const UT_RelPath& base);
    /// Completes this path from `other`: the sections of `other` beyond those this path
    /// already has are appended.
    void fillRelativePath(const UT_RelPath& other);

private:
    UT_String m_text;
};
