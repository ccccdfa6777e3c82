// store/Schema.cpp
// Building the four tables.

#include "store/Schema.h"

#include "store/SeedRows.h"

namespace mdlSchema
{

using namespace Qt::StringLiterals;
using dao::FieldType;

namespace
{

constexpr int TextSize = 255;
constexpr int VersionSize = 8;

/// Description is what the query dialog says about the field.
dao::FieldDef Field(const QString& Name, FieldType Type, const QString& Description)
{
    dao::FieldDef field;
    field.Name = Name;
    field.Type = Type;
    field.Description = Description;
    return field;
}

enum class ZeroLength { Refused, Allowed };

dao::FieldDef TextField(const QString& Name, ZeroLength Empty, const QString& Description, int Size = TextSize)
{
    dao::FieldDef field = Field(Name, FieldType::Text, Description);
    field.Size = Size;
    field.AllowZeroLength = Empty == ZeroLength::Allowed;
    return field;
}

dao::IndexDef PrimaryIndex(const QStringList& Fields) { return {u"PK"_s, Fields, true, true, false}; }

/// Serves counting, paging and linking by board; nobody sees it.
dao::IndexDef HiddenIndex(const QString& Name, const QStringList& Fields) { return {Name, Fields, false, false, true}; }

dao::TableDef BBSTable()
{
    dao::TableDef table;
    table.Name = u"BBS"_s;
    table.Fields = {
        Field(u"BBS_ID"_s, FieldType::Long, u"掲示板の番号"_s),
        TextField(u"BBS_Name"_s, ZeroLength::Refused, u"掲示板の名前"_s),
        TextField(u"ShortName"_s, ZeroLength::Refused, u"掲示板の短い名前"_s),
        TextField(u"URL"_s, ZeroLength::Refused, u"掲示板の CGI のアドレス"_s),
        TextField(u"HowtouseURL"_s, ZeroLength::Refused, u"使い方のページのアドレス"_s),
        Field(u"MaxCount"_s, FieldType::Long, u"掲示板に残る発言の数"_s),
        Field(u"Hitokoto"_s, FieldType::Long, u"-1: 普通の掲示板、0: 左側、1: 右側"_s),
        Field(u"VisitLoad"_s, FieldType::Boolean, u"巡回で読み込む (True / False)"_s),
        Field(u"ListOrder"_s, FieldType::Long, u"メニューでの位置 (0 から)。-1 は表示しない"_s),
        TextField(u"DefaultLogFile"_s, ZeroLength::Allowed, u"過去ログのファイル名の型"_s),
        TextField(u"Identifier"_s, ZeroLength::Allowed, u"掲示板のファイル名の先頭"_s),
    };
    table.Indexes = {PrimaryIndex({u"BBS_ID"_s})};
    return table;
}

dao::TableDef MessageTable()
{
    dao::TableDef table;
    table.Name = u"Message"_s;
    table.Fields = {
        Field(u"BBS_ID"_s, FieldType::Long, u"掲示板の番号 (BBS.BBS_ID)"_s),
        Field(u"ID"_s, FieldType::Long, u"掲示板の中での発言番号"_s),
        Field(u"Read"_s, FieldType::Boolean, u"既読 (True / False)"_s),
        TextField(u"Subject"_s, ZeroLength::Allowed, u"題名"_s),
        TextField(u"Homepage"_s, ZeroLength::Allowed, u"投稿者のホームページ"_s),
        TextField(u"Mail"_s, ZeroLength::Allowed, u"投稿者のメールアドレス"_s),
        TextField(u"PostName"_s, ZeroLength::Allowed, u"投稿者の名前"_s),
        Field(u"PostDate"_s, FieldType::Date, u"投稿日時。#2002/1/15 9:05# の形で比べる"_s),
        Field(u"InReplyTo"_s, FieldType::Long, u"返信先の発言番号。0 は返信でない"_s),
        Field(u"Body"_s, FieldType::Memo, u"本文。空のときは Null"_s),
        Field(u"RootThread"_s, FieldType::Long, u"スレッドの最初の発言番号。自分が最初なら自分の番号"_s),
        Field(u"Mark"_s, FieldType::Long, u"マークの番号 (Mark.ID)。0 はマークなし"_s),
    };
    table.Indexes = {
        PrimaryIndex({u"ID"_s, u"BBS_ID"_s}),
        {u"IDX1"_s, {u"RootThread"_s}, false, false, false},
        HiddenIndex(u"BoardMessage"_s, {u"BBS_ID"_s, u"ID"_s}),
        HiddenIndex(u"BoardRead"_s, {u"BBS_ID"_s, u"Read"_s}),
        // Linking the threads of a page takes time for the page, not for the board.
        HiddenIndex(u"BoardThread"_s, {u"BBS_ID"_s, u"RootThread"_s, u"ID"_s}),
        HiddenIndex(u"BoardReply"_s, {u"BBS_ID"_s, u"InReplyTo"_s}),
    };
    return table;
}

dao::TableDef MarkTable()
{
    dao::TableDef table;
    table.Name = u"Mark"_s;
    table.Fields = {
        Field(u"ID"_s, FieldType::Long, u"マークの番号"_s),
        TextField(u"Name"_s, ZeroLength::Allowed, u"マークの名前。& の次の文字がメニューのキー"_s),
        Field(u"ForeColor"_s, FieldType::Long, u"文字の色 (赤 + 256 × 緑 + 65536 × 青)。負の数はシステムの色"_s),
        Field(u"BackColor"_s, FieldType::Long, u"背景の色 (赤 + 256 × 緑 + 65536 × 青)。負の数はシステムの色"_s),
    };
    table.Indexes = {PrimaryIndex({u"ID"_s})};
    return table;
}

dao::TableDef VersionTable()
{
    dao::TableDef table;
    table.Name = u"Version"_s;
    table.Fields = {
        TextField(u"Table"_s, ZeroLength::Allowed, u"テーブルの名前"_s),
        TextField(u"Version"_s, ZeroLength::Allowed, u"テーブルの版"_s, VersionSize),
    };
    return table;
}

bool CreateTable(dao::Database& Db, const dao::TableDef& Table, const QStringList& SeedStatements)
{
    try {
        Db.AppendTable(Table);
        for (const QString& statement : SeedStatements)
            Db.Execute(statement);
        return true;
    } catch (const dao::Error&) {
        return false;
    }
}

void DropVersionTable(dao::Database& Db)
{
    constexpr int NoSuchTable = 3265;
    try {
        Db.DeleteTable(u"Version"_s);
    } catch (const dao::Error& error) {
        if (error.Number != NoSuchTable)
            throw;
    }
}

void AddVersion(dao::Recordset& Versions, const QString& Table, const QString& Version)
{
    Versions.AddNew();
    Versions.Set(u"Table", dao::Value::FromText(Table));
    Versions.Set(u"Version", dao::Value::FromText(Version));
    Versions.Update();
}

} // namespace

QString BBSTableVersion() { return u"Ver.0.42"_s; }

QString MessageTableVersion() { return u"Ver.0.13"_s; }

QString MarkTableVersion() { return u"Ver.0.40"_s; }

QString FileVersion() { return BBSTableVersion(); }

std::vector<dao::TableDef> Tables() { return {BBSTable(), MessageTable(), MarkTable(), VersionTable()}; }

bool CreateBBSTable(dao::Database& Db) { return CreateTable(Db, BBSTable(), mdlSeedRows::BBSStatements()); }

bool CreateMessageTable(dao::Database& Db) { return CreateTable(Db, MessageTable(), {}); }

bool CreateMarkTable(dao::Database& Db) { return CreateTable(Db, MarkTable(), mdlSeedRows::MarkStatements()); }

bool WriteVersionTable(dao::Database& Db, const QString& Version)
{
    const auto versionOr = [&Version](const QString& Current) { return Version.isEmpty() ? Current : Version; };
    try {
        DropVersionTable(Db);
        Db.AppendTable(VersionTable());
        const auto versions = Db.OpenRecordset(u"Version"_s, dao::RecordsetType::Table);
        AddVersion(*versions, u"BBS"_s, versionOr(BBSTableVersion()));
        AddVersion(*versions, u"Message"_s, versionOr(MessageTableVersion()));
        AddVersion(*versions, u"Mark"_s, versionOr(MarkTableVersion()));
        versions->Close();
        return true;
    } catch (const dao::Error&) {
        return false;
    }
}

} // namespace mdlSchema
