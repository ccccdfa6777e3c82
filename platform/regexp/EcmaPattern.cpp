// platform/regexp/EcmaPattern.cpp
// The way in to the reader, and what its faults are called.

#include "platform/regexp/EcmaPattern.h"

#include "platform/regexp/CEcmaReader.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace regexp
{

CEcmaPattern CEcmaPattern::Read(QStringView Source, const COptions& Options)
{
    return CEcmaReader(Source, Options).Read();
}

/// The start and the ends of the runs lie in this order, so each choice of places counts once.
double CEffort::Compares(qsizetype Units) const
{
    if (!IsBounded)
        return std::numeric_limits<double>::infinity();
    double places = 1;
    for (int i = 0; i <= Runs; ++i)
        places *= (static_cast<double>(Units) + 1 + i) / (i + 1);
    return places * Ways * Length;
}

/// Literals are spelled by their codes where they could be mistaken.
QString CEcmaPattern::Uncounted() const { return QString(Pcre).remove(u"(?C)"_s); }

QString FaultText(Fault What)
{
    switch (What) {
    case Fault::None:
        return {};
    case Fault::OpenGroup:
        return u"「(」が閉じられていません。"_s;
    case Fault::StrayParenthesis:
        return u"「)」に対応する「(」がありません。"_s;
    case Fault::OpenClass:
        return u"「[」が閉じられていません。"_s;
    case Fault::NothingToRepeat:
        return u"繰り返す対象がありません。"_s;
    case Fault::TooManyRepeats:
        return u"繰り返しの回数は %1 までです。"_s.arg(CEcmaPattern::MaxRepeats);
    case Fault::ReversedBounds:
        return u"繰り返しの回数の上限が下限より小さくなっています。"_s;
    case Fault::ReversedRange:
        return u"文字の範囲の順序が逆です。"_s;
    case Fault::TrailingBackslash:
        return u"末尾の「\\」に続く文字がありません。"_s;
    case Fault::UnknownGroup:
        return u"「(?」の次に書けるのは「:」「=」「!」だけです。"_s;
    case Fault::TooDeep:
        return u"括弧の入れ子が深すぎます。"_s;
    case Fault::TooLarge:
        return u"正規表現が大きすぎます。"_s;
    }
    return {};
}

} // namespace regexp
