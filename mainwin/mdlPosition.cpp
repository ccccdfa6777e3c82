// mainwin/mdlPosition.cpp
// Section "Position" of the settings file: place, splitter and column widths of the main window.

#include "mainwin/mdlPosition.h"

#include "app/CIniFile.h"
#include "platform/text/Number.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace mdlPosition
{

namespace
{

constexpr double MaxTwips = 1000000;

QString SectionName() { return u"Position"_s; }

QString ColumnKey(int Column) { return u"ListItem"_s + QString::number(Column + 1); }

std::optional<int> Length(const CIniFile& Ini, const QString& Key)
{
    const std::optional<double> value = text::TextToDouble(Ini.Data(Key));
    if (!value || !(std::abs(*value) <= MaxTwips))
        return std::nullopt;
    return int(std::lround(*value));
}

void Store(CIniFile& Ini, const QString& Key, std::optional<int> Value)
{
    if (Value)
        Ini.SetData(Key, QString::number(*Value));
}

int StateOf(const QString& Text)
{
    const bool isState = Text.size() == 1 && Text[0] >= u'0' && Text[0] <= u'2';
    return isState ? Text[0].digitValue() : Normal;
}

} // namespace

Position Read(CIniFile& Ini)
{
    Ini.SetNowSection(SectionName());
    Position values;
    values.WindowState = StateOf(Ini.Data(u"WindowState"_s));
    values.Left = Length(Ini, u"Left"_s);
    values.Top = Length(Ini, u"Top"_s);
    values.Width = Length(Ini, u"Width"_s);
    values.Height = Length(Ini, u"Height"_s);
    values.Separator = Length(Ini, u"Separator"_s);
    for (int column = 0; column < ColumnCount; ++column)
        values.Columns[std::size_t(column)] = Length(Ini, ColumnKey(column));
    return values;
}

bool Write(CIniFile& Ini, const Position& Values)
{
    Ini.SetNowSection(SectionName());
    Ini.SetData(u"WindowState"_s, QString::number(Values.WindowState));
    Store(Ini, u"Left"_s, Values.Left);
    Store(Ini, u"Top"_s, Values.Top);
    Store(Ini, u"Width"_s, Values.Width);
    Store(Ini, u"Height"_s, Values.Height);
    Store(Ini, u"Separator"_s, Values.Separator);
    for (int column = 0; column < ColumnCount; ++column)
        Store(Ini, ColumnKey(column), Values.Columns[std::size_t(column)]);
    return Ini.Save(SectionName());
}

} // namespace mdlPosition
