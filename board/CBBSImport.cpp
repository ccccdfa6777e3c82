// board/CBBSImport.cpp
// Log files: their messages are stored like received ones.

#include "board/CBBS.h"

#include "board/CBBSProperty.h"
#include "board/CBlockStore.h"
#include "board/CLogFile.h"
#include "board/CRunState.h"
#include "board/ErrorLine.h"
#include "app/Application.h"
#include "platform/dao/Error.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <filesystem>

using namespace Qt::StringLiterals;

bool CBBS::ImportLog(qint32 BBS_ID, const QString& FileName, bool ReadMode)
{
    if (m_state->IsLoad || m_state->IsImport)
        return false;
    *m_state = CRunState{.IsImport = true};
    const auto done = qScopeGuard([this] { m_state->IsImport = false; });
    Q_EMIT ChangeState(FileName + u"の取込中..."_s, false, false);
    try {
        CBBSProperty property(m_app);
        if (!property.GetProperty(BBS_ID)) {
            Fail(u"掲示板の情報が見つかりません。"_s);
            return false;
        }
        const bool isSound = ImportBlocks(BBS_ID, FileName, ReadMode);
        m_state->AnalyseError = m_state->RefusedCount > 0; // of any block, not of the last
        if (m_state->IsCancel || m_state->IsError)
            return false;
        if (isSound || m_state->RecordCount > 0) // a file without any log has been told of
            SumUpImport(FileName, isSound);
        return isSound && m_state->RefusedCount == 0;
    } catch (const dao::Error& error) {
        Fail(mdlErrorLine::Numbered(error.Number, error.Description));
        return false;
    }
}

/// Whether FileName is the open database or a part of it. A second name of one, as of a backup made by links, is too:
/// locks belong to the file.
bool CBBS::IsDatabase(const QString& FileName) const
{
    const auto isChosen = [chosen = QFile::encodeName(FileName).toStdString()](const QString& Name) {
        std::error_code missing;
        return std::filesystem::equivalent(chosen, QFile::encodeName(Name).toStdString(), missing);
    };
    const QString database = m_app.DatabaseFileName();
    return isChosen(database) || isChosen(database + u"-wal"_s) || isChosen(database + u"-shm"_s);
}

/// Stores what can be read of the file; what cannot is told. True when all of it was log text.
bool CBBS::ImportBlocks(qint32 BBS_ID, const QString& FileName, bool ReadMode)
{
    if (IsDatabase(FileName)) { // to open and close it would be to lose the locks on it
        TellOfFile(u"「"_s + QFileInfo(FileName).fileName() +
                   u"」はこのプログラムのデータベースなので取り込めません。"_s);
        return false;
    }
    CLogFile file(FileName);
    bool isSound = true;
    const auto goesOn = [this] {
        QCoreApplication::processEvents(); // unpacking takes long and stays cancellable
        return !m_state->IsCancel;
    };
    for (auto block = file.Next(goesOn); block && !m_state->IsError && !m_state->IsCancel; block = file.Next(goesOn))
        isSound = ImportBlock(BBS_ID, FileName, *block, ReadMode) && isSound;
    if (m_state->IsCancel || m_state->IsError)
        return false;
    if (!file.Error().isEmpty())
        TellOfFile(file.Error());
    return isSound && file.Error().isEmpty();
}

bool CBBS::ImportBlock(qint32 BBS_ID, const QString& FileName, const CLogBlock& Block, bool ReadMode)
{
    if (!Block.Problem.isEmpty())
        TellOfFile(Block.Problem);
    Q_EMIT ChangeState(FileName + u"の解析中..."_s, false, false);
    m_store->Store(BBS_ID, Block.Text, ReadMode);
    if (m_state->IsCancel || m_state->IsError || !Block.Problem.isEmpty())
        return false;
    if (m_state->IsEndMissing) {
        TellOfFile((Block.Name.isEmpty() ? FileName : FileName + u'(' + Block.Name + u')') +
                   u"の終わりは記録が途中で切れているため、取り込めませんでした。"_s);
        return false;
    }
    return true;
}

/// A plain count for a file of which all was taken; otherwise what is missing stands beside it.
void CBBS::SumUpImport(const QString& FileName, bool IsSound)
{
    const QString count = QString::number(m_state->SaveCount);
    QString summary = FileName + u"から"_s + count + u"件インポートしました。"_s;
    if (m_state->RefusedCount > 0)
        summary = FileName + u"には取り込めない記録が"_s + QString::number(m_state->RefusedCount) +
                  u"件ありました。取り込んだ新しいメッセージは"_s + count + u"件です。"_s;
    else if (!IsSound)
        summary =
            FileName + u"には取り込めないところがありました。取り込んだ新しいメッセージは"_s + count + u"件です。"_s;
    Q_EMIT ChangeState(summary, false, true);
}

/// An error of the file that leaves its other parts, and the other files, to be imported.
void CBBS::TellOfFile(const QString& Message) { Q_EMIT ChangeState(Message, true, true); }
