// platform/jetsql/CTextKeys.cpp
// What stands for a text while a statement sorts or groups by it.

#include "platform/jetsql/CTextKeys.h"

#include "platform/text/Fold.h"

#include <QHash>
#include <QString>

namespace jetsql {

namespace {

constexpr size_t SlotCount = 4096;
constexpr qsizetype LongestKept = 80;   // UTF-16 units: names and most subjects

std::u16string_view UnitsOf(QStringView Text) { return {Text.utf16(), size_t(Text.size())}; }

// With the seed of the process: nobody can make up texts that all hash alike.
size_t HashOf(std::u16string_view Units)
{
    return qHashBits(Units.data(), Units.size() * sizeof(char16_t), QHashSeed::globalSeed());
}

}

size_t CTextNumbers::Hash::operator()(std::u16string_view Units) const { return HashOf(Units); }

qint64 CTextNumbers::Of(QStringView Text)
{
    QString folded;
    if (!text::IsFolded(Text))
        folded = text::Fold(Text);
    const std::u16string_view units = UnitsOf(folded.isNull() ? Text : QStringView(folded));
    const auto known = m_numbers.find(units);
    if (known != m_numbers.end())
        return known->second;
    const auto next = qint64(m_numbers.size());
    m_numbers.emplace(units, next);
    return next;
}

const QByteArray& CSortKeys::Of(QStringView Text)
{
    if (Text.size() > LongestKept)
        return m_long = text::SortKey(Text);
    if (m_slots.empty())
        m_slots.resize(SlotCount);
    const std::u16string_view units = UnitsOf(Text);
    Slot& slot = m_slots[HashOf(units) % SlotCount];
    if (slot.Text != units || slot.Key.isNull()) {
        slot.Key = text::SortKey(Text);
        slot.Text = units;
    }
    return slot.Key;
}

std::shared_ptr<CTextNumbers> CTextKeys::Numbers()
{
    std::shared_ptr<CTextNumbers> numbers = m_numbers.lock();
    if (!numbers)
        m_numbers = numbers = std::make_shared<CTextNumbers>();
    return numbers;
}

}
