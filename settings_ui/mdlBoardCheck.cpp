// settings_ui/mdlBoardCheck.cpp
// What a board's address and identifier must be like so that the program can work with them.

#include "settings_ui/mdlBoardCheck.h"

#include "platform/net/CookieText.h"
#include "platform/text/Codepage932.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// Longest name of a file, in bytes of UTF-8, less the longest extension (".html").
constexpr qsizetype MaxIdentifierBytes = 255 - 5;

bool HasAny(const QString& Text, QStringView Units)
{
    return std::any_of(Text.begin(), Text.end(), [Units](QChar unit) { return Units.contains(unit); });
}

bool HasControl(const QString& Text)
{
    return std::any_of(Text.begin(), Text.end(), [](QChar unit) { return unit.category() == QChar::Other_Control; });
}

/// Names that stand for devices in every folder, whatever extension follows them.
bool IsDevice(const QString& Identifier)
{
    static const QRegularExpression devices(u"^(con|prn|aux|nul|com[0-9]|lpt[0-9])( *\\.|$)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return devices.match(Identifier.trimmed()).hasMatch();
}

} // namespace

namespace mdlBoardCheck
{

QString AddressProblem(const QString& Address)
{
    const QUrl url(Address);
    if (url.scheme() != u"http" && url.scheme() != u"https")
        return u"URLはhttp://かhttps://で始めてください。"_s;
    if (HasAny(Address, u"=;?# 　") || HasControl(Address) || !mdlCookieText::IsName(text::To932(Address)))
        return u"URLに「=」「;」「?」「#」や空白を入れることはできません。"_s;
    if (!url.isValid() || !mdlCookieText::IsDomain(url.host(QUrl::FullyEncoded).toLatin1().toLower()))
        return u"URLのサーバーの名前が正しくありません。"_s;
    return {};
}

QString IdentifierProblem(const QString& Identifier)
{
    if (HasAny(Identifier, u"\\/:*?\"<>|") || HasControl(Identifier))
        return u"識別子はファイル名になります。「\\」「/」「:」「*」「?」「\"」「<」「>」「|」を入れることはできません。"_s;
    if (Identifier.contains(u".."_s))
        return u"識別子はファイル名になります。「..」を入れることはできません。"_s;
    if (IsDevice(Identifier))
        return u"識別子はファイル名になります。「"_s + Identifier + u"」は使えない名前です。"_s;
    if (Identifier.toUtf8().size() > MaxIdentifierBytes)
        return u"識別子が長すぎます。"_s;
    return {};
}

} // namespace mdlBoardCheck
