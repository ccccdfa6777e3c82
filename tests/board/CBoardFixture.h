// tests/board/CBoardFixture.h
// Board access over a real, new database in a folder of its own, with everything that it tells written down.

#ifndef TESTS_BOARD_CBOARDFIXTURE_H
#define TESTS_BOARD_CBOARDFIXTURE_H

#include "app/Application.h"
#include "board/CBBS.h"
#include "board/CBBSProperty.h"
#include "platform/dao/Database.h"
#include "platform/net/CCookieStore.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"

#include <QTemporaryDir>
#include <QUrl>

/// Board 3 is an ordinary board, 13 and 14 are the two sides of one.
struct CBoardFixture
{
    QTemporaryDir Folder;
    CScriptedDesktop Desk;
    Application App{Desk, Folder.path(), QStringLiteral("Tavora")};
    CBBS Board{App};

    QStringList States;              ///< progress texts
    QStringList Errors;              ///< error texts
    QStringList Logged;              ///< messages of broken or refused records
    QStringList LoggedText;          ///< those records
    std::vector<CMessage> Added;
    std::vector<CMessage> Withdrawn;

    CBoardFixture()
    {
        App.SetLogDB(mdlStore::CreateNewDatabase(App.DatabaseFileName()));
        App.Option().ErrorLogFilePath = App.Option().CacheFilePath = App.Option().IconFilePath = App.AppPath();
        Board.Initialize(App.LogDB());
        QObject::connect(&Board, &CBBS::ChangeState, [this](const QString& Text, bool IsError, bool AddLog) {
            (IsError && AddLog ? Errors : States) << Text;
        });
        QObject::connect(&Board, &CBBS::LogError, [this](qint32, const QString& Text, const QString& Message) {
            Logged << Message;
            LoggedText << Text;
        });
        QObject::connect(&Board, &CBBS::AddMessage, [this](const CMessage& Msg) { Added.push_back(Msg); });
        QObject::connect(&Board, &CBBS::BatchWithdrawn, [this](const std::vector<CMessage>& Messages) {
            Withdrawn.insert(Withdrawn.end(), Messages.begin(), Messages.end());
        });
    }

    void Run(const QString& Sql) { App.LogDB()->Execute(Sql); }

    /// Rows of Sql, fields joined by commas, rows by blanks; Null as "Null".
    QString Rows(const QString& Sql)
    {
        QStringList texts;
        for (const auto rows = App.LogDB()->OpenRecordset(Sql); !rows->Eof(); rows->MoveNext()) {
            QStringList fields;
            for (int field = 0; field < rows->FieldCount(); ++field)
                fields << (rows->IsNull(field) ? QStringLiteral("Null") : rows->Text(field));
            texts << fields.join(u',');
        }
        return texts.join(u' ');
    }

    /// "number:root" of every message of the board.
    QString Threads(qint32 BBS_ID = 3)
    {
        return Rows(QStringLiteral("SELECT ID, RootThread FROM Message WHERE BBS_ID = %1 ORDER BY ID").arg(BBS_ID))
            .replace(u',', u':');
    }

    void SetBoardUrl(const QUrl& Url, qint32 BBS_ID = 3)
    {
        Run(QStringLiteral("UPDATE BBS SET URL = '%1' WHERE BBS_ID = %2").arg(Url.toString()).arg(BBS_ID));
    }

    CBBSProperty Property(qint32 BBS_ID = 3)
    {
        CBBSProperty property(App);
        property.GetProperty(BBS_ID);
        return property;
    }

    /// The cookie's value as it stands in the store.
    QByteArray Cookie(const QString& Address)
    {
        return App.Cookies().Value(QUrl(Address), Address.toLatin1()).value_or(QByteArray());
    }
};

#endif // TESTS_BOARD_CBOARDFIXTURE_H
