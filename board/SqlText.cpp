// board/SqlText.cpp
// Text as a constant inside a statement.

#include "board/SqlText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// Bars that are written as an expression. Beyond that a text is drawing or mischief, and fifteen characters for each bar
/// would make a statement of gigabytes; the engine takes a plain bar as well.
constexpr qsizetype MaxBarExpressions = 100000;

bool IsSpecial(QChar Unit) { return Unit == u'\'' || Unit == u'|'; }

void AppendSpecial(QString& Statement, QChar Unit, bool BarAsExpression)
{
    if (Unit == u'\'')
        Statement += "''"_L1;
    else if (BarAsExpression)
        Statement += "' & Chr(124) & '"_L1;
    else
        Statement += Unit;
}
} // namespace

void mdlSqlText::AppendQuoted(QString& Statement, QStringView Text)
{
    Statement += u'\'';
    auto from = Text.begin();
    auto special = std::find_if(from, Text.end(), IsSpecial);
    const bool barAsExpression = special == Text.end() || Text.count(u'|') <= MaxBarExpressions;
    for (; special != Text.end(); special = std::find_if(from, Text.end(), IsSpecial)) {
        Statement += QStringView(from, special);
        AppendSpecial(Statement, *special, barAsExpression);
        from = special + 1;
    }
    Statement += QStringView(from, Text.end());
    Statement += u'\'';
}

QString mdlSqlText::Quoted(QStringView Text)
{
    QString quoted;
    AppendQuoted(quoted, Text);
    return quoted;
}

QString mdlSqlText::InsideLike(QStringView Text)
{
    QString pattern;
    for (qsizetype at = 0; at < Text.size(); ++at) {
        const QChar unit = Text[at];
        const bool isLineEnd = unit == u'\r' || unit == u'\n' || unit == QChar::ParagraphSeparator ||
                               unit == QChar::LineSeparator;
        if (unit == u'\r' && at + 1 < Text.size() && Text[at + 1] == u'\n')
            ++at;
        if (isLineEnd)
            pattern += "\r\n"_L1;
        else if (QStringView(u"[*?#").contains(unit))
            pattern += u'[' + QString(unit) + u']';
        else
            pattern += unit == u'\'' ? u"''"_s : QString(unit);
    }
    return pattern;
}
