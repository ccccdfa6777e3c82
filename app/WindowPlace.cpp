// app/WindowPlace.cpp
// A window's place in its section of the settings file.

#include "app/WindowPlace.h"

#include "app/CIniFile.h"
#include "platform/text/Number.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace mdlWindowPlace
{
namespace
{
QString LeftKey() { return u"Left"_s; }
QString TopKey() { return u"Top"_s; }
QString WidthKey() { return u"Width"_s; }
QString HeightKey() { return u"Height"_s; }
} // namespace

std::optional<int> Twips(const CIniFile& Ini, const QString& Key)
{
    const std::optional<double> value = text::TextToDouble(Ini.Data(Key));
    if (!value || !(std::abs(*value) <= MaxTwips))
        return std::nullopt;
    return static_cast<int>(std::lround(*value));
}

void SetTwips(CIniFile& Ini, const QString& Key, std::optional<int> Value)
{
    if (Value)
        Ini.SetData(Key, QString::number(*Value));
    else
        Ini.DeleteData(Key);
}

mdlGeometry::Place Read(const CIniFile& Ini)
{
    return {Twips(Ini, LeftKey()), Twips(Ini, TopKey()), Twips(Ini, WidthKey()), Twips(Ini, HeightKey())};
}

void Store(CIniFile& Ini, const mdlGeometry::Place& Values)
{
    SetTwips(Ini, LeftKey(), Values.Left);
    SetTwips(Ini, TopKey(), Values.Top);
    SetTwips(Ini, WidthKey(), Values.Width);
    SetTwips(Ini, HeightKey(), Values.Height);
}
} // namespace mdlWindowPlace
