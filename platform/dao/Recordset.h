// platform/dao/Recordset.h
// Rows with a current one: what all kinds of recordsets offer.

#ifndef DAO_RECORDSET_H
#define DAO_RECORDSET_H

#include "platform/dao/CPosition.h"
#include "platform/dao/Types.h"

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace dao
{

/// Rows of a table or a query, one of them current.
///
/// Opens on the first row; an empty one opens with Bof and Eof both true. All members throw Error; most used numbers:
/// 3021 no current row, 3265 no such field, 3420 closed, 3251 not possible with this kind, 3027 read-only file, 3326
/// rows of a query that cannot be edited. Moving, closing or a new Edit or AddNew drop a pending edit silently.
/// Outliving its Database is allowed: from Database::Close on everything but the destructor throws 3420.
class Recordset
{
public:
    virtual ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    RecordsetType Type() const { return m_type; }

    bool Bof() const;
    bool Eof() const;
    /// Table: all rows. Others: the rows visited so far, so 1 right after opening and all after MoveLast. 0 when empty.
    virtual qint32 RecordCount() const;
    void MoveFirst() { MoveTo(CPosition::Step::First); }
    void MoveLast() { MoveTo(CPosition::Step::Last); }
    /// Past the last row Eof becomes true; from there error 3021.
    void MoveNext() { Move(1); }
    /// Before the first row Bof becomes true; from there error 3021.
    void MovePrevious() { Move(-1); }
    /// Rows forward (negative: back), stopping at Eof or Bof. Constant time for any distance.
    void Move(int Rows);

    int FieldCount() const { return int(m_columns.size()); }
    /// Field counts from 0; 3265 outside.
    const ResultColumn& Field(int Field) const;
    /// The number of a field by its name, letter case, width and kana alike; 3265 when there is none.
    int FieldIndex(QStringView Name) const;

    /// The current row's value; while an edit is pending the edited one.
    Value Get(int Field) const;
    Value Get(QStringView Name) const { return Get(FieldIndex(Name)); }

    /// Reads for long loops, without a Value in between. Null reads as 0, empty or false; other types are
    /// converted as Value does it.
    qint32 Long(int Field) const;
    double Double(int Field) const;
    bool Boolean(int Field) const;
    QString Text(int Field) const;
    bool IsNull(int Field) const;

    /// Begins a new row: every field Null, a Boolean False, a counter its next number. Stored by Update.
    void AddNew();
    /// Begins to change the current row.
    void Edit();
    /// Gives a field of the pending edit a value. 3020 without an edit, 3421 when it does not convert to the field's
    /// type, 3163 when it is longer than the field, 3327 for an expression, 3113 for the counter of
    /// a row that is there.
    void Set(int Field, const Value& NewValue);
    void Set(QStringView Name, const Value& NewValue) { Set(FieldIndex(Name), NewValue); }
    /// Stores the pending edit; after AddNew the row that was current is current again. When a rule refuses the row
    /// (3022, 3058, 3314, 3315) nothing is stored and the edit stays pending.
    void Update();
    /// Drops the pending edit; 3020 when there is none.
    void CancelUpdate();
    /// Removes the current row. It stays the current one, but reading it is error 3167 until the next move.
    void Delete();

    /// Table type only: orders by an index and goes to the first row; empty: back to the table's own order. 3015
    /// unknown index.
    virtual void SetIndex(QStringView IndexName);
    /// Table type only: finds the first row ("=", ">=", ">") or the last ("<=", "<") whose key compares so with Keys.
    /// Missing trailing keys are Null for "=" and not compared otherwise. Not found: NoMatch, and no current row.
    /// 3019 without an index, 3001 for another operator or too many keys.
    virtual void Seek(QStringView Operator, const std::vector<Value>& Keys);
    bool NoMatch() const { return m_noMatch; }

    /// Frees the rows. Everything but Close and the destructor throws 3420 afterwards.
    void Close();

protected:
    /// Pending values by field; a field without one keeps what it has.
    using EditBuffer = std::vector<std::optional<Value>>;

    Recordset(RecordsetType Type, std::vector<ResultColumn> Columns);

    const std::vector<ResultColumn>& Columns() const { return m_columns; }
    CPosition& Position() const { return m_position; }
    void SetNoMatch(bool NoMatch) { m_noMatch = NoMatch; }
    void RequireOpen() const;
    void DropEdit();

    /// Throws 3420 when the connection that the rows come from is gone.
    virtual void RequireConnection() const = 0;
    /// Rows there are; asked before every move, after Settle.
    virtual qsizetype RowTotal() const = 0;
    /// Called before the position is asked for or changed; a kind that looks for its rows only when it must does so
    /// here.
    virtual void Settle() const {}
    /// Throws 3021 or 3167 without a current row.
    virtual void RequireRow() const { Position().Row(); }
    /// Called after the position has changed.
    virtual void Moved() {}
    /// Throws what keeps this recordset from being edited, 3251 unless overridden.
    virtual void RequireEditable() const;
    /// The value that is stored for a field of the current row.
    virtual Value Stored(int Field) const = 0;
    virtual qint32 StoredLong(int Field) const { return Stored(Field).ToLong(); }
    virtual double StoredDouble(int Field) const { return Stored(Field).ToDouble(); }
    virtual QString StoredText(int Field) const { return Stored(Field).ToText(); }
    virtual bool StoredNull(int Field) const { return Stored(Field).IsNull(); }
    /// The field that counts by itself, -1 where there is none, and the number that a new row is going to get.
    virtual int Counter() const { return -1; }
    virtual Value NextNumber() { return {}; }
    /// Writing hooks; the defaults cannot be reached, as RequireEditable throws.
    virtual void StoreChanges(const EditBuffer& Changes);
    virtual void StoreNew(const EditBuffer& Fields);
    virtual void RemoveCurrent();
    virtual void Release() = 0;

private:
    enum class EditMode { None, Edit, Add };

    void MoveTo(CPosition::Step Step);
    void BeginEdit(EditMode Mode);
    const Value* Pending(int Field) const;
    /// Checks that Field can be read; the pending value, or nullptr where the stored one counts.
    const Value* ForReading(int Field) const;

    RecordsetType m_type;
    std::vector<ResultColumn> m_columns;
    mutable CPosition m_position; // a table is only positioned when somebody asks where it stands
    EditMode m_editMode = EditMode::None;
    EditBuffer m_edit;
    bool m_noMatch = false;
    bool m_closed = false;
};

} // namespace dao

#endif
