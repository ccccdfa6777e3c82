// app/CIniText.h
// The bytes of an INI file: which sections they hold, and putting sections into them.

#ifndef APP_CINITEXT_H
#define APP_CINITEXT_H

#include <QByteArray>
#include <QStringList>

#include <vector>

/// Reads and changes INI bytes without touching what it was not asked to change.
class CIniText
{
public:
    struct Section
    {
        QString Name;
        QStringList Lines; // trimmed, without empty ones and comments
    };

    /// Bytes in code page 932, or with a byte order mark in UTF-16LE or UTF-8.
    explicit CIniText(QByteArray Bytes);

    /// The sections in order; of several with one name (case does not count) only the first.
    std::vector<Section> Sections() const;

    /// Replaces all lines of each of the sections. One that is not there is put at the end.
    void Write(const std::vector<Section>& Sections);

    const QByteArray& Bytes() const { return m_bytes; }

    /// Whether every character of Text has a code in the encoding of this file.
    bool CanHold(const QString& Text) const;

private:
    enum class Encoding { Codepage932, Utf8, Utf16 };

    /// One line as bytes: its text and its text with the line end.
    struct Line
    {
        QByteArrayView Text;
        QByteArrayView Whole;
    };

    qsizetype MarkSize() const;
    qsizetype UnitSize() const { return m_encoding == Encoding::Utf16 ? 2 : 1; }
    Line LineAt(qsizetype Place) const;
    QString Decode(QByteArrayView Text) const;
    QByteArray Encode(const QString& Text) const;
    QByteArray EncodeLines(const QStringList& Lines) const;

    QByteArray m_bytes;
    Encoding m_encoding;
};

#endif // APP_CINITEXT_H
