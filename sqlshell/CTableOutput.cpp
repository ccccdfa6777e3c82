// sqlshell/CTableOutput.cpp
// Aligning cells.

#include "sqlshell/CTableOutput.h"

#include "sqlshell/Place.h"

#include "platform/text/DisplayWidth.h"

using namespace Qt::StringLiterals;

namespace sqlshell
{

namespace
{

QString Aligned(const QString& Cell, int Width, bool IsRight)
{
    const QString blanks(std::max(0, Width - text::DisplayWidth(Cell)), u' ');
    return IsRight ? blanks + Cell : Cell + blanks;
}

QString AffectedSentence(dao::QueryType Type, int Count)
{
    switch (Type) {
    case dao::QueryType::Append:
        return u"%1 件を追加しました。"_s.arg(Count);
    case dao::QueryType::Update:
        return u"%1 件を更新しました。"_s.arg(Count);
    case dao::QueryType::Delete:
        return u"%1 件を削除しました。"_s.arg(Count);
    case dao::QueryType::MakeTable:
        return u"%1 件のテーブルを作成しました。"_s.arg(Count);
    default:
        return u"実行しました。"_s;
    }
}

} // namespace

QString TypeName(dao::QueryType Type)
{
    switch (Type) {
    case dao::QueryType::Select:
        return u"選択"_s;
    case dao::QueryType::Crosstab:
        return u"クロス集計"_s;
    case dao::QueryType::Delete:
        return u"削除"_s;
    case dao::QueryType::Update:
        return u"更新"_s;
    case dao::QueryType::Append:
        return u"追加"_s;
    case dao::QueryType::MakeTable:
        return u"テーブル作成"_s;
    case dao::QueryType::Ddl:
        return u"データ定義"_s;
    case dao::QueryType::Union:
        return u"ユニオン"_s;
    default:
        return u"その他"_s;
    }
}

CTableOutput::CTableOutput(CSink& Out, CSink& Messages, Stop IsStopped, int MaxWidth)
    : COutput(Out, Messages, std::move(IsStopped))
    , m_maxWidth(MaxWidth)
{}

QString CTableOutput::Cell(const QString& Text) const { return OneLine(Text, m_maxWidth); }

QStringList CTableOutput::Cells(const dao::Recordset& Source) const
{
    QStringList cells;
    for (int field = 0; field < Source.FieldCount(); ++field)
        cells.append(Source.IsNull(field) ? u"Null"_s : Cell(Source.Get(field).ToText()));
    return cells;
}

void CTableOutput::Widen(CWidths& Columns, const QStringList& Cells)
{
    for (size_t i = 0; i < Columns.size(); ++i)
        Columns[i].Width = std::max(Columns[i].Width, text::DisplayWidth(Cells[qsizetype(i)]));
}

void CTableOutput::Row(const CWidths& Columns, const QStringList& Cells)
{
    QString line;
    for (size_t i = 0; i < Columns.size(); ++i) {
        const bool isLast = i + 1 == Columns.size();
        const int width = isLast && !Columns[i].IsRight ? 0 : Columns[i].Width; // no blanks at the end of a line
        line += (i == 0 ? u" "_s : u" | "_s) + Aligned(Cells[qsizetype(i)], width, Columns[i].IsRight);
    }
    Out().Put(line + u'\n');
}

void CTableOutput::Heading(const CWidths& Columns, const QStringList& Names)
{
    Row(Columns, Names);
    QString line;
    for (const CColumn& column : Columns)
        line += (line.isEmpty() ? u""_s : u"+"_s) + QString(column.Width + 2, u'-');
    Out().Put(line + u'\n');
}

// A pass of its own over rows that are in memory anyway costs less than keeping all cells.
bool CTableOutput::Measure(CWidths& Columns, dao::Recordset& Source) const
{
    const bool isEmpty = Source.Eof();
    for (; !Source.Eof() && !IsStopped(); Source.MoveNext())
        Widen(Columns, Cells(Source));
    if (!Source.Eof())
        return false;
    if (!isEmpty)
        Source.MoveFirst();
    return true;
}

bool CTableOutput::Rows(dao::QueryType, dao::Recordset& Source)
{
    CWidths columns(size_t(Source.FieldCount()));
    QStringList names;
    for (int field = 0; field < Source.FieldCount(); ++field) {
        const dao::ResultColumn& column = Source.Field(field);
        names.append(Cell(column.Name));
        columns[size_t(field)].IsRight = jetsql::IsNumber(column.Type) && column.Type != dao::FieldType::Boolean;
    }
    Widen(columns, names);
    qint64 count = 0;
    bool isWhole = Measure(columns, Source);
    if (isWhole) {
        Heading(columns, names);
        for (; !Source.Eof() && !IsStopped(); Source.MoveNext(), ++count)
            Row(columns, Cells(Source));
        isWhole = Source.Eof();
    }
    if (isWhole)
        Out().Put(u"(%1 件)\n\n"_s.arg(count));
    else
        Refused({jetsql::MakeError(3059), {}, 1, {}});
    return isWhole;
}

void CTableOutput::Affected(dao::QueryType Type, int Count) { Out().Put(AffectedSentence(Type, Count) + u'\n'); }

void CTableOutput::Type(dao::QueryType Type)
{
    Out().Put(u"%1 (%2)\n"_s.arg(QString::number(int(Type)), TypeName(Type)));
}

void CTableOutput::List(const CListing& Listing)
{
    if (Listing.Columns.isEmpty()) {
        for (const QStringList& row : Listing.Rows)
            Out().Put(row.constFirst() + u'\n');
        return;
    }
    CWidths columns(size_t(Listing.Columns.size()));
    std::vector<QStringList> rows;
    Widen(columns, Listing.Columns);
    for (const QStringList& row : Listing.Rows) {
        QStringList& cells = rows.emplace_back();
        for (const QString& text : row)
            cells.append(Cell(text));
        Widen(columns, cells);
    }
    Heading(columns, Listing.Columns);
    for (const QStringList& row : rows)
        Row(columns, row);
    Out().Put(u"(%1 件)\n\n"_s.arg(rows.size()));
}

void CTableOutput::Done(const QString&, const QString&, const QString& Sentence) { Out().Put(Sentence + u'\n'); }

void CTableOutput::Text(const QString& Text, const QString&, const QJsonValue&) { Out().Put(Text); }

} // namespace sqlshell
