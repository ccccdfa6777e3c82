// fuzz/FuzzIni.cpp
// The bytes of a settings file: read, one section written anew, and read again.

#include "app/CIniText.h"
#include "fuzz/Demand.h"

using namespace Qt::StringLiterals;

namespace
{

bool IsSame(const CIniText::Section& Left, const CIniText::Section& Right)
{
    return Left.Name == Right.Name && Left.Lines == Right.Lines;
}

const CIniText::Section* Find(const std::vector<CIniText::Section>& Sections, const QString& Name)
{
    for (const CIniText::Section& each : Sections) {
        if (each.Name.compare(Name, Qt::CaseInsensitive) == 0)
            return &each;
    }
    return nullptr;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    CIniText ini(BytesOf(Data, Size));
    const std::vector<CIniText::Section> before = ini.Sections();
    const CIniText::Section written{u"Option"_s, {u"UseRegExp=True"_s, u"名前=表ソ"_s}};
    ini.Write({written});
    const std::vector<CIniText::Section> after = CIniText(ini.Bytes()).Sections();
    const CIniText::Section* const found = Find(after, written.Name);
    Demand(found && found->Lines == written.Lines, "what was written is read");
    for (const CIniText::Section& each : before) {
        const CIniText::Section* const kept = Find(after, each.Name);
        Demand(kept && (kept == found || IsSame(*kept, each)), "the other sections stay");
    }
    const QByteArray once = ini.Bytes();
    ini.Write({written});
    Demand(ini.Bytes() == once, "writing the same again changes nothing");
    return 0;
}
