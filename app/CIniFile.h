// app/CIniFile.h
// One INI file, held in memory for the whole run and written back a section at a time.

#ifndef APP_CINIFILE_H
#define APP_CINIFILE_H

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

/// An INI file in code page 932; one that begins with a byte order mark is read and kept in UTF-16 or UTF-8.
///
/// One section is the current one; Data, Keys, DeleteData, Clear, InitData and IsExist act on it. Names of sections and
/// keys are told apart without case. Everything happens in memory until Save.
class CIniFile
{
public:
    /// How InitData reads a value; any other number gives the text as it stands.
    enum DataType : qint16 { String = 0, Long = 1, Single = 2, Boolean = 3 };

    /// Bytes. A settings file has a few thousand; a larger file is none, it is neither read nor written to.
    static constexpr qint64 MaxFileSize = 4 * 1024 * 1024;

    /// Replaces everything by the sections of FileName and remembers the name for Save. A missing, empty or unreadable
    /// file gives an empty store. Where a key stands twice the later one counts, of sections the first. Always true.
    bool Load(const QString& FileName);

    /// Writes Section (made current, and made if there was none) over all its lines in the file; the other sections
    /// stay on disk byte for byte. An empty Section writes every section. False when the file could not be written or
    /// there is no section; the file is then as it was before, and so is the content in memory.
    bool Save(const QString& Section);

    const QString& FileName() const { return m_fileName; }

    /// Whether Text can stand in the file; in code page 932 a character without a code would be saved as "?".
    bool CanHold(const QString& Text) const;

    /// Name of the current section as it is spelled in the file; empty after Load.
    const QString& NowSection() const { return m_nowSection; }
    /// Makes Section current; one that does not exist is created empty.
    void SetNowSection(const QString& Section);
    /// Whether the current section was there when it was made current, or has been saved since.
    bool IsExist() const { return m_isExist; }

    /// Names of the sections in the order of the file, those made later behind.
    QStringList Sections() const;
    /// Keys of the current section in the order in which they were last set.
    QStringList Keys() const;

    /// Value of Key; empty when it is missing. A line without "=" is found by its whole text and is its own value.
    QString Data(const QString& Key) const;
    /// Sets Key, which moves to the end of the section. What would tear the line apart in the file is replaced: line
    /// breaks and NUL by blanks, in a key also "=" and a "[" or ";" at its front by their full-width forms.
    void SetData(const QString& Key, const QString& Value);
    void DeleteData(const QString& Key);
    /// Removes every key of the current section.
    void Clear();

    /// Data(Key) read as Type; Default where it is missing, blank or does not convert. Never changes the store.
    QVariant InitData(const QString& Key, qint16 Type, const QVariant& Default) const;

    QString InitString(const QString& Key, const QString& Default) const;
    qint32 InitLong(const QString& Key, qint32 Default) const;
    bool InitBoolean(const QString& Key, bool Default) const;

    /// Whether Value converts to a boolean, a 16-bit integer, a 32-bit integer, a single-precision number.
    static bool IsBool(const QString& Value);
    static bool IsInt(const QString& Value);
    static bool IsLng(const QString& Value);
    static bool IsSng(const QString& Value);

private:
    struct Entry
    {
        QString Key;
        QString Value;
        bool HasKey = true; // false: a line without "=", Key and Value are both the line
        bool IsGone = false;
    };

    /// Entries are only marked as gone, so that an INI file of junk is not gone through again for each of its lines;
    /// they are thrown out when they have become more than the others.
    struct Section
    {
        QString Name;
        std::vector<Entry> Entries;
        QHash<QString, std::size_t> Places; // case-folded key → index in Entries

        const Entry* Find(const QString& Key) const;
        void Set(Entry New);
        void Remove(const QString& Key);
        void DropGone();
    };

    const Section* Current() const;
    Section* Current();
    Section& Add(const QString& Name);
    bool Write(const QStringList& Names);

    QString m_fileName;
    QString m_nowSection;
    bool m_isExist = false;
    std::vector<Section> m_sections;
    QHash<QString, std::size_t> m_places; // case-folded name → index in m_sections
};

#endif // APP_CINIFILE_H
