// platform/jetsql/CTextKeys.h
// What stands for a text while a statement sorts or groups by it.

#ifndef JETSQL_CTEXTKEYS_H
#define JETSQL_CTEXTKEYS_H

#include <QByteArray>
#include <QStringView>

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;

namespace jetsql {

/// Numbers texts so that alike ones, by their fold, have the same number. Holds the folds of all it has seen: it is to
/// live no longer than the statement that asks.
class CTextNumbers
{
public:
    qint64 Of(QStringView Text);

private:
    struct Hash
    {
        using is_transparent = void;
        size_t operator()(std::u16string_view Units) const;
    };
    std::unordered_map<std::u16string, qint64, Hash, std::equal_to<>> m_numbers;
};

/// Sort keys, and the last ones made: a column of names or boards has few different texts, and making a key takes some
/// ten times as long as finding it.
class CSortKeys
{
public:
    /// Valid until the next call.
    const QByteArray& Of(QStringView Text);

private:
    struct Slot
    {
        std::u16string Text;
        QByteArray Key;
    };
    std::vector<Slot> m_slots;   // a text has one place in it by its hash
    QByteArray m_long;
};

/// What one connection keeps of both.
class CTextKeys
{
public:
    CSortKeys SortKeys;

    /// The numbers that running statements share: made for the first of them, gone with the last.
    std::shared_ptr<CTextNumbers> Numbers();

private:
    std::weak_ptr<CTextNumbers> m_numbers;
};

/// Gives a connection the collations JETTEXT and JETEQUAL and the functions that make keys and numbers of texts.
void RegisterTextKeys(sqlite3* Connection);

}

#endif
