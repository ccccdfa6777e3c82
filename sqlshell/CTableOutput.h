// sqlshell/CTableOutput.h
// Results as tables for reading.

#ifndef SQLSHELL_CTABLEOUTPUT_H
#define SQLSHELL_CTABLEOUTPUT_H

#include "sqlshell/COutput.h"

namespace sqlshell
{

/// Columns aligned by what they take on a terminal, numbers to the right, Null as "Null", a line with the count below.
/// Each cell is one line, at most MaxWidth columns wide (0: as wide as it is).
class CTableOutput : public COutput
{
public:
    CTableOutput(CSink& Out, CSink& Messages, Stop IsStopped, int MaxWidth);

    bool Rows(dao::QueryType Type, dao::Recordset& Source) override;
    void Affected(dao::QueryType Type, int Count) override;
    void Type(dao::QueryType Type) override;
    void List(const CListing& Listing) override;
    void Done(const QString& Key, const QString& Name, const QString& Sentence) override;
    void Text(const QString& Text, const QString& Key, const QJsonValue& Json) override;
    void Refused(const CRefusal& Refusal) override { WriteRefusal(Refusal); }

private:
    struct CColumn
    {
        int Width = 0;
        bool IsRight = false;
    };
    using CWidths = std::vector<CColumn>;

    QString Cell(const QString& Text) const;
    QStringList Cells(const dao::Recordset& Source) const;
    bool Measure(CWidths& Columns, dao::Recordset& Source) const;
    static void Widen(CWidths& Columns, const QStringList& Cells);
    void Heading(const CWidths& Columns, const QStringList& Names);
    void Row(const CWidths& Columns, const QStringList& Cells);

    int m_maxWidth;
};

/// What a type of statement is called: "選択", "更新".
QString TypeName(dao::QueryType Type);

} // namespace sqlshell

#endif
