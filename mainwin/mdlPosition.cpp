// mainwin/mdlPosition.cpp
// Section "Position" of the settings file: what the main window looked like when it was closed.

#include "mainwin/mdlPosition.h"

#include "app/CIniFile.h"
#include "app/WindowPlace.h"
#include "platform/text/Number.h"

#include <QHeaderView>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace mdlPosition
{

namespace
{

using Order = std::array<int, ColumnCount>;

constexpr int WidestColumn = 2000; // pixels at 100 %

QString SectionName() { return u"Position"_s; }

QString ColumnKey(int Column) { return u"ListItem"_s + QString::number(Column + 1); }

QString StateKey() { return u"WindowState"_s; }
QString SeparatorKey() { return u"Separator"_s; }
QString OrderKey() { return u"ColumnOrder"_s; }
QString TextSizeKey() { return u"TextSize"_s; }

int StateOf(const QString& Text)
{
    const bool isState = Text.size() == 1 && Text[0] >= u'0' && Text[0] <= u'2';
    return isState ? Text[0].digitValue() : Normal;
}

constexpr Order NaturalOrder()
{
    Order order{};
    std::iota(order.begin(), order.end(), 0);
    return order;
}

// "1,3,2,...": numbers of columns, counted from 1.
std::optional<Order> OrderOf(const QString& Text)
{
    const QStringList numbers = Text.split(u',');
    Order order{};
    if (numbers.size() != ColumnCount)
        return std::nullopt;
    std::transform(numbers.begin(), numbers.end(), order.begin(),
                   [](const QString& number) { return text::TextToLong(number).value_or(0) - 1; });
    constexpr Order natural = NaturalOrder();
    if (!std::is_permutation(order.begin(), order.end(), natural.begin()))
        return std::nullopt;
    return order;
}

QString TextOf(const Order& Columns)
{
    QStringList numbers;
    for (const int column : Columns)
        numbers.append(QString::number(column + 1));
    return numbers.join(u',');
}

std::optional<double> TextSizeOf(const QString& Text)
{
    const std::optional<double> size = text::TextToDouble(Text);
    return size && std::isfinite(*size) && *size > 0 ? size : std::nullopt;
}

void StoreText(CIniFile& Ini, const QString& Key, const QString& Text)
{
    if (Text.isEmpty())
        Ini.DeleteData(Key);
    else
        Ini.SetData(Key, Text);
}

} // namespace

Position Read(CIniFile& Ini)
{
    Ini.SetNowSection(SectionName());
    Position values;
    values.WindowState = StateOf(Ini.Data(StateKey()));
    values.Window = mdlWindowPlace::Read(Ini);
    values.Separator = mdlWindowPlace::Twips(Ini, SeparatorKey());
    for (int column = 0; column < ColumnCount; ++column)
        values.Columns[std::size_t(column)] = mdlWindowPlace::Twips(Ini, ColumnKey(column));
    values.ColumnOrder = OrderOf(Ini.Data(OrderKey()));
    values.TextSize = TextSizeOf(Ini.Data(TextSizeKey()));
    return values;
}

bool Write(CIniFile& Ini, const Position& Values)
{
    Ini.SetNowSection(SectionName());
    Ini.SetData(StateKey(), QString::number(Values.WindowState));
    mdlWindowPlace::Store(Ini, Values.Window);
    mdlWindowPlace::SetTwips(Ini, SeparatorKey(), Values.Separator);
    for (int column = 0; column < ColumnCount; ++column)
        mdlWindowPlace::SetTwips(Ini, ColumnKey(column), Values.Columns[std::size_t(column)]);
    StoreText(Ini, OrderKey(), Values.ColumnOrder ? TextOf(*Values.ColumnOrder) : QString());
    StoreText(Ini, TextSizeKey(), Values.TextSize ? QString::number(*Values.TextSize) : QString());
    return Ini.Save(SectionName());
}

void TakeColumns(Position& Values, const QHeaderView& Header)
{
    Order order{};
    for (int column = 0; column < ColumnCount; ++column) {
        Values.Columns[std::size_t(column)] = mdlGeometry::ToTwips(Header.sectionSize(column));
        order[std::size_t(column)] = Header.logicalIndex(column);
    }
    Values.ColumnOrder = order == NaturalOrder() ? std::nullopt : std::optional(order);
}

void PlaceColumns(const Position& Values, QHeaderView& Header)
{
    for (int column = 0; column < ColumnCount; ++column) {
        if (const auto width = Values.Columns[std::size_t(column)])
            Header.resizeSection(column,
                                 std::clamp(mdlGeometry::ToPixels(*width), Header.minimumSectionSize(), WidestColumn));
        if (Values.ColumnOrder)
            Header.moveSection(Header.visualIndex((*Values.ColumnOrder)[std::size_t(column)]), column);
    }
}

} // namespace mdlPosition
