// app/CIniFile.h
// One INI file, held in memory for the whole run and written back a section at a time.

#ifndef APP_CINIFILE_H
#define APP_CINIFILE_H

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

/// An INI file in code page 932 (UTF-16 with a byte order mark is read and kept, a UTF-8 mark too).
///
/// One section is the current one; Data, Keys, DeleteData, Clear, InitData and IsExist act on it. Names of sections and
/// keys are told apart without case. Everything happens in memory until Save.
class CIniFile
{
public:
    /// How InitData reads a value; any other number gives the text as it stands.
    enum DataType : qint16 { String = 0, Long = 1, Single = 2, Boolean = 3 };

    /// A settings file is a few kilobytes; what is larger is none and is cut here.
    static constexpr qint64 MaxFileSize = 4 * 1024 * 1024;

    /// Replaces everything by the sections of FileName, also remembering the name for Save. A missing, empty or
    /// unreadable file gives an empty store. Always true.
    bool Load(const QString& FileName);

    /// Writes Section (made current, and made if there was none) over its lines in the file; other sections, comments
    /// and their order stay as they are on disk. An empty Section writes every section in order.
    /// False when the file could not be written or there was nothing to write; the file on disk is then untouched and
    /// the content in memory stays.
    bool Save(const QString& Section);

    const QString& FileName() const { return m_fileName; }

    /// Name of the current section as it is spelled in the file; empty after Load.
    const QString& NowSection() const { return m_nowSection; }
    /// Makes Section current; one that does not exist is created empty.
    void SetNowSection(const QString& Section);
    /// Whether the current section was there when it was made current, or has been saved since.
    bool IsExist() const { return m_isExist; }

    /// Names of the sections in the order of the file, those made later behind.
    QStringList Sections() const;
    /// Keys of the current section in the order in which they were last set.
    const QStringList& Keys() const { return m_keys; }

    /// Value of Key; empty when it is missing. A line without "=" is found by its whole text and is its own value.
    QString Data(const QString& Key) const;
    /// Sets Key, which moves to the end of the section. Line breaks and NUL become blanks, in the file they would tear
    /// the line apart.
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
    };

    struct SectionData
    {
        QString Name;
        std::vector<Entry> Entries;
    };

    SectionData* Find(const QString& Section);
    SectionData* Current() { return Find(m_nowSection); }
    const Entry* FindEntry(const QString& Key) const;
    bool SaveSection(const QString& Section);
    QStringList Lines(const SectionData& Section) const;

    QString m_fileName;
    QString m_nowSection;
    bool m_isExist = false;
    std::vector<SectionData> m_sections;
    QHash<QString, std::size_t> m_places; // folded name → index in m_sections
    QStringList m_keys;
};

#endif // APP_CINIFILE_H
