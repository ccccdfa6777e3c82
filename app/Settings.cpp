// app/Settings.cpp
// The section "Option" as a table of keys, the first web-search menu and the data folders.

#include "app/Settings.h"

#include "app/Application.h"
#include "app/CFile.h"
#include "app/Path.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"
#include "platform/text/Codepage932.h"

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace mdlSettings
{

namespace
{

/// First field of the first row; 0 when there is none or the statement fails.
qint32 FirstNumber(Application& App, const QString& Sql)
{
    if (App.LogDB() == nullptr)
        return 0;
    try {
        const std::unique_ptr<dao::Recordset> rows = App.LogDB()->OpenRecordset(Sql);
        return rows->Eof() ? 0 : rows->Long(0);
    } catch (const dao::Error&) {
        return 0; // a damaged table of boards is reported where the boards are shown
    }
}

/// The board in the settings as long as it is shown, otherwise the first one that is.
qint32 StartBoard(Application& App)
{
    const qint32 saved = App.SettingsIni().InitLong(u"BBS_ID"_s, 0);
    const QString check = u"SELECT BBS_ID  FROM BBS WHERE BBS_ID = %1   AND ListOrder >= 0"_s.arg(saved);
    if (saved != 0 && FirstNumber(App, check) == saved)
        return saved;
    return FirstNumber(App, u"SELECT BBS_ID  FROM BBS WHERE ListOrder = (SELECT Min(ListOrder)"
                            "                      FROM BBS                     WHERE ListOrder >= 0)"_s);
}

/// What reading and writing do with each setting, in the order of the file.
///
/// Visitor gets the key, the field and the default, for numbers also the range outside which the default counts.
template<typename Visitor> void VisitOptions(Settings& Option, const QString& AppPath, Visitor& Visit)
{
    constexpr qint32 max = std::numeric_limits<qint32>::max();
    Visit.Flag(u"Timer"_s, Option.Timer, false);
    Visit.Number(u"Interval"_s, Option.Interval, DefaultInterval, MinInterval, MaxInterval);
    Visit.Number(u"AddMax"_s, Option.AddMax, DefaultAddMax, 1, MaxAddMax);
    Visit.Number(u"ReadTiming"_s, Option.ReadTiming, DefaultReadTiming, 0, max);
    Visit.Text(u"ReplyHeader"_s, Option.ReplyHeader, DefaultReplyHeader());
    Visit.Text(u"DateFormat"_s, Option.DateFormat, DefaultDateFormat());
    Visit.Number(u"Timeout"_s, Option.Timeout, DefaultTimeout, 0, max);
    Visit.Flag(u"SaveSQLDialogPosition"_s, Option.SaveSQLDialogPosition, true);
    Visit.Flag(u"SaveLoadDialogPosition"_s, Option.SaveLoadDialogPosition, true);
    Visit.Flag(u"AutoCloseImportDialog"_s, Option.AutoCloseImportDialog, false);
    Visit.Flag(u"UseRegExp"_s, Option.UseRegExp, true);
    Visit.Flag(u"IgnoreCase"_s, Option.IgnoreCase, true);
    Visit.Flag(u"ImportReadMode"_s, Option.ImportReadMode, false);
    Visit.Text(u"ErrorLogFilePath"_s, Option.ErrorLogFilePath, AppPath);
    Visit.Text(u"CacheFilePath"_s, Option.CacheFilePath, mdlPath::AddBackslash(AppPath + u"cache"_s));
    Visit.Text(u"IconFilePath"_s, Option.IconFilePath, mdlPath::AddBackslash(AppPath + u"image"_s));
    Visit.Flag(u"AddTaskTray"_s, Option.AddTaskTray, true);
    Visit.Flag(u"HideAtMinimazed"_s, Option.HideAtMinimazed, false);
    Visit.Flag(u"BlinkIcon"_s, Option.BlinkIcon, true);
    Visit.Flag(u"NoReadBold"_s, Option.NoReadBold, true);
    Visit.Flag(u"ExitIfMessageFound"_s, Option.ExitIfMessageFound, false);
}

struct OptionReader
{
    const CIniFile& Ini;

    void Flag(const QString& Key, bool& Field, bool Default) { Field = Ini.InitBoolean(Key, Default); }
    void Text(const QString& Key, QString& Field, const QString& Default) { Field = Ini.InitString(Key, Default); }
    void Number(const QString& Key, qint32& Field, qint32 Default, qint32 Min, qint32 Max)
    {
        const qint32 value = Ini.InitLong(Key, Default);
        Field = value >= Min && value <= Max ? value : Default;
    }
};

struct OptionWriter
{
    CIniFile& Ini;

    void Flag(const QString& Key, bool Field, bool) { Ini.SetData(Key, Field ? u"True"_s : u"False"_s); }
    void Text(const QString& Key, const QString& Field, const QString&) { Ini.SetData(Key, Field); }
    void Number(const QString& Key, qint32 Field, qint32, qint32, qint32) { Ini.SetData(Key, QString::number(Field)); }
};

} // namespace

QString DefaultReplyHeader() { return u"%s#%I %S より引用\\n%B"_s; }

QString DefaultDateFormat() { return u"yyyy/mm/dd hh:nn"_s; }

void ReadSettings(Application& App)
{
    App.SettingsIni().SetNowSection(u"Option"_s);
    App.Option().BBS_ID = StartBoard(App);
    OptionReader reader{App.SettingsIni()};
    VisitOptions(App.Option(), App.AppPath(), reader);
    App.Option().Timer = false; // nobody expects a program that was just started to go online by itself
}

bool WriteSettings(Application& App)
{
    CIniFile& ini = App.SettingsIni();
    ini.SetNowSection(u"Option"_s);
    ini.SetData(u"BBS_ID"_s, QString::number(App.Option().BBS_ID));
    OptionWriter writer{ini};
    VisitOptions(App.Option(), App.AppPath(), writer);
    return ini.Save(u"Option"_s);
}

bool InitWebSearchList(Application& App)
{
    CIniFile& ini = App.SettingsIni();
    ini.SetNowSection(u"WebSearch"_s);
    if (!ini.IsExist()) {
        ini.SetData(u"Googleで検索(&G)..."_s, u"http://www.example.com/search?q=%s&num=100"_s);
        ini.SetData(u"マイクロソフトサイト検索(&J)..."_s,
                    u"http://www.example.org/japan/SearchMS25.asp?qu=%s&IntCat=0&IntCat=2&Nq=NEW&boolean=ALL"_s);
        ini.SetData(u"Microsoft Web Search(&U)..."_s,
                    u"http://www.example.org/us/SearchMS25.asp?qu=%s&IntCat=0&IntCat=2&Nq=NEW&boolean=ALL"_s);
    }
    return ini.Save(u"WebSearch"_s);
}

bool CheckFolders(Application& App)
{
    Settings& option = App.Option();
    bool areThere = true;
    for (const auto& [folder, label] : {std::pair(&option.IconFilePath, u"アイコンフォルダ"_s),
                                        std::pair(&option.CacheFilePath, u"キャッシュフォルダ"_s),
                                        std::pair(&option.ErrorLogFilePath, u"エラーログフォルダ"_s)}) {
        *folder = mdlPath::AddBackslash(*folder);
        areThere &= EnsureFolder(App, *folder, label);
    }
    return areThere;
}

bool EnsureFolder(Application& App, const QString& Folder, const QString& Label)
{
    const CFile file(mdlPath::AddBackslash(Folder));
    if (file.IsExistDir())
        return true;
    const QString question = Label + u'"' + Folder + u"\"は存在しません。\n作成しますか？"_s;
    const Desktop::Answer answer = App.Shell.MessageBox(question, App.AppTitle(), Desktop::Icon::Information,
                                                        Desktop::Buttons::YesNo, Desktop::Answer::Yes);
    if (answer != Desktop::Answer::Yes)
        return false;
    file.MakeDir();
    return true;
}

QString URLEncode(const QString& Text) { return text::UrlEncode932(Text); }

} // namespace mdlSettings
