// platform/jetsql/CBinderCrosstab.cpp
// Gives the names of a syntax tree their meaning: what makes a select a crosstab.

#include "platform/jetsql/CBinder.h"
#include "platform/jetsql/TypeRules.h"
#include "platform/text/Fold.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr size_t MaxColumns = 1000;
constexpr qsizetype MaxNameLength = 64;

// As the value reads in a statement's text, without what a name may not hold.
QString HeadingName(const Value& Heading)
{
    if (Heading.IsNull())
        return u"<>"_s;
    QString name = Heading.Type() == FieldType::Boolean ? QString::number(Heading.WholePart()) : Heading.ToText();
    for (QChar& unit : name) {
        if (unit == u'.' || unit == u'!')
            unit = u'_';
        else if (unit == u'[')
            unit = u'(';
        else if (unit == u']')
            unit = u')';
    }
    return name.left(MaxNameLength);
}

bool SameValue(const Value& Left, const Value& Right)
{
    if (IsText(Left.Type()) && IsText(Right.Type()))
        return text::EqualText(Left.TextRef(), Right.TextRef());
    return Left == Right;
}

}

void AddHeadingColumns(std::vector<ResultColumn>& To, const std::vector<Value>& Headings, FieldType Type, int Size)
{
    if (To.size() + Headings.size() > MaxColumns)
        throw MakeError(3205, {QString::number(Headings.size())});
    QSet<QString> taken;
    for (const ResultColumn& column : To)
        taken.insert(text::Fold(column.Name));
    for (const Value& heading : Headings) {
        QString name = HeadingName(heading);
        if (taken.contains(text::Fold(name)))   // "a.b" beside "a_b", or the name of a row's own column
            name = u"Expr"_s + QString::number(1000 + To.size());
        taken.insert(text::Fold(name));
        To.push_back({name, Type, Size, {}, {}});
    }
}

void CBinder::BindCrosstab(Select& Which, Scope& In, size_t KnownParameters)
{
    Pivot& pivot = *Which.Crossed;
    for (const SelectItem& item : Which.Items) {
        if (!item.Value)
            throw MakeError(3123, {}, OffsetOf(item.First));
    }
    if (Which.Having)
        throw MakeError(3092, {}, OffsetOf(Which.Having->First));
    m_clause = Clause::GroupBy;
    BindExpression(*pivot.Heading, &In);
    m_clause = Clause::Items;
    BindExpression(*pivot.Cell, &In);
    if (pivot.IsFixed)
        BindFixedHeadings(pivot);
    // Whoever mistypes a field here is told so: parameters are declared.
    for (size_t i = KnownParameters; i < m_parameters.size(); ++i) {
        const KnownParameter& known = m_parameters[i];
        if (!known.IsDeclared)
            throw MakeError(3070, {known.Info.Name}, OffsetOf(known.Place[m_place.size()]));
    }
}

// The list is compared with the values of PIVOT, so it is brought to their type.
void CBinder::BindFixedHeadings(Pivot& Which)
{
    for (const ExprPtr& given : Which.Fixed) {
        const int offset = OffsetOf(given->First);
        if (!IsLiteral(*given) && !IsNullWord(*given))
            throw MakeError(3322, {Shown(*given)}, offset);
        Value value;
        try {
            value = ConstantOf(*given, *m_tokens).ToType(Which.Heading->Type);
        } catch (const Error&) {
            throw MakeError(3322, {Shown(*given)}, offset);
        }
        const bool isKnown = std::any_of(Which.Values.begin(), Which.Values.end(), [&](const Value& known) { return SameValue(known, value); });
        if (isKnown)
            throw MakeError(3104, {HeadingName(value)}, offset);
        Which.Values.push_back(std::move(value));
    }
}

void CBinder::AddHeadings(Query& Which)
{
    constexpr int TextSize = 255;
    const Pivot& pivot = *Which.Members.front()->Crossed;
    const FieldType type = pivot.Cell->Type;
    AddHeadingColumns(Which.Columns, pivot.Values, type, type == FieldType::Text ? TextSize : 0);
}

}
