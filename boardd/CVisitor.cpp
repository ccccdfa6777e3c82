// boardd/CVisitor.cpp
// Reading and writing the visitor's cookie.

#include "boardd/CVisitor.h"

#include "boardd/Record.h"

#include "platform/text/Codepage932.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int CookieDays = 120;

QByteArray FindCookie(QByteArrayView Header, QByteArrayView Name)
{
    const QByteArray wanted = Name.toByteArray() + '=';
    for (const QByteArray& pair : Header.toByteArray().split(';')) {
        const QByteArray trimmed = pair.trimmed();
        if (trimmed.startsWith(wanted))
            return trimmed.mid(wanted.size());
    }
    return {};
}

} // namespace

CVisitor::CVisitor(bool TwoSided)
    : CVisitor(QByteArrayView(), QByteArrayView(), TwoSided)
{
}

CVisitor::CVisitor(QByteArrayView CookieHeader, QByteArrayView CookieName, bool TwoSided)
    : m_twoSided(TwoSided)
{
    QByteArray value = CookieName.isEmpty() ? QByteArray() : FindCookie(CookieHeader, CookieName);
    if (value.isEmpty())
        value = TwoSided ? QByteArrayLiteral(",,,,30,,,0,50,0") : QByteArrayLiteral(",,,,20,,,0,30");
    m_fields = value.split(',');
    const qsizetype wanted = TwoSided ? 10 : 9;
    while (m_fields.size() < wanted)
        m_fields.append(QByteArray());
}

QString CVisitor::Text(Field Index) const
{
    return mdlRecord::OneLine(text::From932(m_fields[Index]));
}

void CVisitor::SetText(Field Index, const QString& Text)
{
    QString safe = mdlRecord::OneLine(Text);
    safe.replace(u',', u'，').replace(u';', u'；').replace(u'%', u'％');
    m_fields[Index] = mdlRecord::Encode(safe);
}

qint32 CVisitor::Number(Field Index, qint32 Default) const
{
    if (Index >= m_fields.size())
        return Default;
    bool isNumber = false;
    const qint32 number = m_fields[Index].trimmed().toInt(&isNumber);
    return isNumber ? number : Default;
}

void CVisitor::SetNumber(Field Index, qint32 Value)
{
    m_fields[Index] = QByteArray::number(Value);
}

int CVisitor::GetViewCount() const
{
    const qint32 byDefault = m_twoSided ? 30 : 20;
    const qint32 count = Number(ViewCount, byDefault);
    return count < 1 ? byDefault : std::min(count, MaxViewCount);
}

qint32 CVisitor::GetNoReadPoint(int Side) const
{
    return Number(Side == 1 ? RightNoReadPoint : NoReadPoint, 0);
}

qint32 CVisitor::GetDownloadCount() const
{
    const qint32 byDefault = m_twoSided ? 50 : 30;
    const qint32 count = Number(DownloadCount, byDefault);
    return count < 1 ? byDefault : count;
}

QByteArray CVisitor::SetCookie(const QByteArray& CookieName, const QDateTime& Now) const
{
    const QString expires =
        QLocale::c().toString(Now.toUTC().addDays(CookieDays), u"ddd, dd-MMM-yyyy HH:mm:ss 'GMT'"_s);
    return CookieName + '=' + Value() + "; expires=" + expires.toLatin1();
}
