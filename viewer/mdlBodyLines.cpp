// viewer/mdlBodyLines.cpp
// Tells quotations and comments by wildcard patterns.

#include "viewer/mdlBodyLines.h"

#include "platform/text/Like.h"

using namespace Qt::StringLiterals;

namespace
{

QStringView WithoutLeadingBlanks(QStringView Line)
{
    qsizetype begin = 0;
    while (begin < Line.size() && (Line[begin] == u' ' || Line[begin] == u'\u3000'))
        ++begin;
    return Line.mid(begin);
}

} // namespace

namespace mdlBodyLines
{

ViewerHost::LineKind KindOf(QStringView Line)
{
    static const auto quote = text::CLikePattern::Compile(u"[|>＞]*", text::Compare::Binary);
    static const auto comment = text::CLikePattern::Compile(u"[#＃]*", text::Compare::Binary);
    const QStringView line = WithoutLeadingBlanks(Line);
    if (quote->Matches(line))
        return ViewerHost::LineKind::Quote;
    return comment->Matches(line) ? ViewerHost::LineKind::Comment : ViewerHost::LineKind::Plain;
}

std::vector<ViewerHost::BodyLine> Split(const QString& Body)
{
    std::vector<ViewerHost::BodyLine> lines;
    for (const QStringView piece : QStringView(Body).tokenize(u"\r\n"))
        lines.push_back({piece.toString(), KindOf(piece)});
    return lines;
}

} // namespace mdlBodyLines
