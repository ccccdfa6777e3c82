// platform/jetsql/TextRegistration.cpp
// Gives a SQLite connection the collations, the sort keys and the numbers of texts.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/CTextKeys.h"
#include "platform/text/Fold.h"

#include <QStringView>
#include <QVarLengthArray>

#include <cstring>
#include <memory>
#include <new>

#include <sqlite3.h>

namespace jetsql {

namespace {

/// The units of a text as SQLite has it in a page: at any address. Asking SQLite for aligned texts would make it copy
/// both of every comparison.
class CPageText
{
public:
    CPageText(const void* Start, int Size) : m_units(static_cast<const char16_t*>(Start)), m_size(Size / 2)
    {
        if (quintptr(Start) % alignof(char16_t) == 0)
            return;
        m_room.resize(m_size);
        std::memcpy(m_room.data(), Start, size_t(m_size) * sizeof(char16_t));
        m_units = m_room.constData();
    }
    QStringView View() const { return {m_units, m_size}; }

private:
    const char16_t* m_units;
    qsizetype m_size;
    QVarLengthArray<char16_t, 256> m_room;
};

template <int Compare(QStringView, QStringView)>
int Collate(void*, int LeftSize, const void* Left, int RightSize, const void* Right)
{
    if (LeftSize == RightSize && std::memcmp(Left, Right, size_t(LeftSize)) == 0)
        return 0;
    return Compare(CPageText(Left, LeftSize).View(), CPageText(Right, RightSize).View());
}

using KeptKeys = std::shared_ptr<CTextKeys>;
using KeptNumbers = std::shared_ptr<CTextNumbers>;

template <typename Kept>
void Delete(void* Gone)
{
    delete static_cast<Kept*>(Gone);
}

void SortKey(CTextKeys& Keys, CCall& Call)
{
    if (!Call.IsText(0))
        return Call.SetArgument(0);
    QString buffer;
    Call.SetBytes(Keys.SortKeys.Of(Call.View(0, buffer)));
}

// A number and not the fold itself: SQLite sorts the rows to group them, and numbers are sorted fastest. The second
// argument is a constant, to which SQLite ties what is to be kept until the statement ends.
void TextNumber(CTextKeys& Keys, CCall& Call)
{
    auto* kept = static_cast<KeptNumbers*>(sqlite3_get_auxdata(Call.Context(), 1));
    KeptNumbers numbers = kept ? nullptr : Keys.Numbers();
    QString buffer;
    Call.SetWhole((kept ? *kept : numbers)->Of(Call.View(0, buffer)));
    if (!kept)
        sqlite3_set_auxdata(Call.Context(), 1, new KeptNumbers(std::move(numbers)), Delete<KeptNumbers>);
}

// No exception may pass through SQLite.
template <void Body(CTextKeys&, CCall&)>
void Run(sqlite3_context* Context, int Count, sqlite3_value** Args)
{
    CCall call(Context, Count, Args);
    if (call.IsNull(0))
        return call.SetNull();
    try {
        Body(**static_cast<KeptKeys*>(sqlite3_user_data(Context)), call);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(Context);
    }
}

template <void Body(CTextKeys&, CCall&)>
void Register(sqlite3* Connection, const char* Name, int Arguments, const KeptKeys& Keys)
{
    sqlite3_create_function_v2(Connection, Name, Arguments, SQLITE_UTF16 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC,
                               new KeptKeys(Keys), Run<Body>, nullptr, nullptr, Delete<KeptKeys>);
}

}

void RegisterTextKeys(sqlite3* Connection)
{
    // UTF-16 is what the file holds and what QString is: nothing is converted on the way.
    sqlite3_create_collation_v2(Connection, "JETTEXT", SQLITE_UTF16, nullptr, Collate<text::CompareText>, nullptr);
    sqlite3_create_collation_v2(Connection, "JETEQUAL", SQLITE_UTF16, nullptr, Collate<text::CompareFolds>, nullptr);
    const auto keys = std::make_shared<CTextKeys>();
    Register<SortKey>(Connection, "jet_sortkey", 1, keys);
    Register<TextNumber>(Connection, "jet_textnumber", 2, keys);
}

}
