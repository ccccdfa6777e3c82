// fuzz/FuzzCookies.cpp
// Lines as servers send them in Set-Cookie headers, and as they stand in the cookie file.

#include "fuzz/Demand.h"
#include "platform/net/CCookieStore.h"
#include "platform/net/CookieText.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{

void CheckFileLine(const QByteArray& Line)
{
    const auto cookie = mdlCookieText::FromLine(Line);
    if (!cookie)
        return;
    const QByteArray written = mdlCookieText::ToLine(*cookie);
    const auto again = mdlCookieText::FromLine(written);
    Demand(again && mdlCookieText::ToLine(*again) == written, "a cookie's line reads as that cookie");
    Demand(again->Name == cookie->Name && again->Value == cookie->Value, "name and value survive the file");
}

void CheckHeader(const QByteArray& Line)
{
    static const QUrl url(u"http://board.example.jp:8932/cgi-bin/yanagi.cgi"_s);
    CCookieStore store{QString()};
    mdlCookieText::ReadAttributes(Line);
    mdlCookieText::ReadDate(Line);
    store.SetFromHeader(url, Line);
    const QByteArray sent = store.Get(url);
    for (const char bad : {'\r', '\n', '\0'})
        Demand(!sent.contains(bad), "what is sent is one line");
    Demand(sent.size() <= CCookieStore::MaxCookieBytes + 1, "what is sent is bounded");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    for (const QByteArray& line : BytesOf(Data, Size).split('\n')) {
        CheckFileLine(line);
        CheckHeader(line);
    }
    return 0;
}
