// app/CIniFile.cpp
// The store of sections in memory; the file itself is CIniText's.

#include "app/CIniFile.h"

#include "app/CIniText.h"
#include "platform/text/Number.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <optional>

namespace
{

constexpr std::size_t GoneKept = 16; // of a small section

/// A missing file reads as empty; nothing when it cannot be read or is no settings file.
std::optional<QByteArray> ReadAll(const QString& FileName)
{
    const QFileInfo info(FileName);
    if (!info.exists())
        return QByteArray();
    QFile file(FileName);
    if (!info.isFile() || info.size() > CIniFile::MaxFileSize || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(bytes) : std::nullopt;
}

bool WriteAll(const QString& FileName, const QByteArray& Bytes)
{
    QSaveFile file(FileName);
    // What fails while the last of the bytes leave the buffer, commit() does not notice: a full disk would empty the
    // file.
    return file.open(QIODevice::WriteOnly) && file.write(Bytes) == Bytes.size() && file.flush() && file.commit();
}

QString OnOneLine(QString Text)
{
    for (QChar& unit : Text) {
        if (unit == u'\r' || unit == u'\n' || unit.isNull())
            unit = u' ';
    }
    return Text;
}

QString CleanKey(const QString& Key)
{
    QString key = OnOneLine(Key).trimmed().replace(u'=', u'＝');
    if (key.startsWith(u'['))
        key[0] = u'［';
    else if (key.startsWith(u';'))
        key[0] = u'；';
    return key;
}

} // namespace

const CIniFile::Entry* CIniFile::Section::Find(const QString& Key) const
{
    const auto place = Places.constFind(Key.toCaseFolded());
    return place != Places.cend() ? &Entries[*place] : nullptr;
}

void CIniFile::Section::Set(Entry New)
{
    Remove(New.Key);
    Places.insert(New.Key.toCaseFolded(), Entries.size());
    Entries.push_back(std::move(New));
}

void CIniFile::Section::Remove(const QString& Key)
{
    const auto place = Places.constFind(Key.toCaseFolded());
    if (place == Places.cend())
        return;
    Entries[*place].IsGone = true;
    Places.erase(place);
    if (Entries.size() > GoneKept + 2 * std::size_t(Places.size()))
        DropGone(); // a dialog that keeps its place sets the same keys at every closing
}

void CIniFile::Section::DropGone()
{
    std::erase_if(Entries, [](const Entry& Each) { return Each.IsGone; });
    for (std::size_t place = 0; place < Entries.size(); ++place)
        Places.insert(Entries[place].Key.toCaseFolded(), place);
}

bool CIniFile::Load(const QString& FileName)
{
    m_fileName = FileName;
    m_nowSection.clear();
    m_isExist = false;
    m_sections.clear();
    m_places.clear();
    for (const CIniText::Section& read : CIniText(ReadAll(FileName).value_or(QByteArray())).Sections()) {
        Section& section = Add(read.Name);
        for (const QString& line : read.Lines) {
            const qsizetype sign = line.indexOf(u'=');
            section.Set(sign < 0 ? Entry{line, line, false} : Entry{line.left(sign), line.mid(sign + 1)});
        }
    }
    return true;
}

bool CIniFile::Save(const QString& Section) { return Write(Section.isEmpty() ? Sections() : QStringList(Section)); }

bool CIniFile::Write(const QStringList& Names)
{
    if (Names.isEmpty())
        return false;
    std::vector<CIniText::Section> written;
    for (const QString& name : Names) {
        SetNowSection(name);
        CIniText::Section section{m_nowSection, {}};
        for (const QString& key : Keys())
            section.Lines.append(key + u'=' + Data(key));
        written.push_back(std::move(section));
    }
    const std::optional<QByteArray> before = m_fileName.isEmpty() ? std::nullopt : ReadAll(m_fileName);
    if (!before)
        return false;
    CIniText text(*before);
    text.Write(written);
    // A file that already says so is left alone: it may lie on a medium that cannot be written.
    if (text.Bytes() != *before && !WriteAll(m_fileName, text.Bytes()))
        return false;
    m_isExist = true;
    return true;
}

bool CIniFile::CanHold(const QString& Text) const
{
    return CIniText(ReadAll(m_fileName).value_or(QByteArray())).CanHold(Text);
}

void CIniFile::SetNowSection(const QString& Section)
{
    const QString name = OnOneLine(Section).trimmed();
    if (name == m_nowSection)
        return;
    const auto place = m_places.constFind(name.toCaseFolded());
    m_isExist = place != m_places.cend();
    m_nowSection = m_isExist ? m_sections[*place].Name : name;
    if (!m_isExist && !name.isEmpty())
        Add(name);
}

CIniFile::Section& CIniFile::Add(const QString& Name)
{
    m_places.insert(Name.toCaseFolded(), m_sections.size());
    return m_sections.emplace_back(Section{Name, {}, {}});
}

const CIniFile::Section* CIniFile::Current() const
{
    const auto place = m_places.constFind(m_nowSection.toCaseFolded());
    return place != m_places.cend() ? &m_sections[*place] : nullptr;
}

CIniFile::Section* CIniFile::Current() { return const_cast<Section*>(std::as_const(*this).Current()); }

QStringList CIniFile::Sections() const
{
    QStringList names;
    for (const Section& section : m_sections)
        names.append(section.Name);
    return names;
}

QStringList CIniFile::Keys() const
{
    QStringList keys;
    const Section* const section = Current();
    for (const Entry& entry : section != nullptr ? section->Entries : std::vector<Entry>()) {
        if (entry.HasKey && !entry.IsGone)
            keys.append(entry.Key);
    }
    return keys;
}

QString CIniFile::Data(const QString& Key) const
{
    const Section* const section = Current();
    const Entry* const entry = section != nullptr ? section->Find(CleanKey(Key)) : nullptr;
    return entry != nullptr ? entry->Value : QString();
}

void CIniFile::SetData(const QString& Key, const QString& Value)
{
    if (Section* const section = Current())
        section->Set({CleanKey(Key), OnOneLine(Value)});
}

void CIniFile::DeleteData(const QString& Key)
{
    if (Section* const section = Current())
        section->Remove(CleanKey(Key));
}

void CIniFile::Clear()
{
    for (const QString& key : Keys())
        DeleteData(key);
}

QVariant CIniFile::InitData(const QString& Key, qint16 Type, const QVariant& Default) const
{
    const QString value = Data(Key);
    switch (Type) {
    case String:
        return value.trimmed().isEmpty() ? Default : QVariant(value);
    case Long:
        return IsLng(value) ? QVariant(*text::TextToLong(value)) : Default;
    case Single:
        return IsSng(value) ? QVariant(*text::TextToSingle(value)) : Default;
    case Boolean:
        return IsBool(value) ? QVariant(*text::TextToBoolean(value)) : Default;
    default:
        return value;
    }
}

QString CIniFile::InitString(const QString& Key, const QString& Default) const
{
    return InitData(Key, String, Default).toString();
}

qint32 CIniFile::InitLong(const QString& Key, qint32 Default) const { return InitData(Key, Long, Default).toInt(); }

bool CIniFile::InitBoolean(const QString& Key, bool Default) const { return InitData(Key, Boolean, Default).toBool(); }

bool CIniFile::IsBool(const QString& Value) { return text::TextToBoolean(Value).has_value(); }

bool CIniFile::IsInt(const QString& Value) { return text::TextToInteger(Value).has_value(); }

bool CIniFile::IsLng(const QString& Value) { return text::TextToLong(Value).has_value(); }

bool CIniFile::IsSng(const QString& Value) { return text::TextToSingle(Value).has_value(); }
