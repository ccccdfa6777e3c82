// app/Settings.h
// The settings of the section "Option" and the procedures that read, write and check them.

#ifndef APP_SETTINGS_H
#define APP_SETTINGS_H

#include <QString>

class Application;

/// The settings of the section "Option", held for the whole run in fields named after their keys.
struct Settings
{
    qint32 BBS_ID = 0;        ///< board shown at start, at exit the one shown last; 0 is none
    bool Timer = false;       ///< timer receive; always off at start
    qint32 Interval = 30;     ///< of the timer receive, 10 to 120
    qint32 AddMax = 100;      ///< messages shown at one time, 1 to 1000
    qint32 ReadTiming = 1500; ///< milliseconds until a shown message counts as read, 0 and up
    QString ReplyHeader;      ///< format of "copy with header"; "\n" in it is two characters
    QString DateFormat;       ///< pattern of text::FormatDate
    qint32 Timeout = 60;      ///< seconds without progress until a request is given up; 0 is never
    bool SaveSQLDialogPosition = true;
    bool SaveLoadDialogPosition = true;
    bool AutoCloseImportDialog = false;
    bool UseRegExp = true;
    bool IgnoreCase = true;
    bool ImportReadMode = false;
    QString ErrorLogFilePath; ///< folder with a trailing separator, as the next two
    QString CacheFilePath;
    QString IconFilePath;
    bool AddTaskTray = true;
    bool HideAtMinimazed = false;
    bool BlinkIcon = true;
    bool NoReadBold = true;
    bool ExitIfMessageFound = false;
};

namespace mdlSettings
{

inline constexpr qint32 DefaultInterval = 30;
inline constexpr qint32 MinInterval = 10;
inline constexpr qint32 MaxInterval = 120;
inline constexpr qint32 DefaultAddMax = 100;
inline constexpr qint32 MaxAddMax = 1000;
inline constexpr qint32 DefaultReadTiming = 1500;
inline constexpr qint32 DefaultTimeout = 60;

/// "%s#%I %S より引用\n%B", the "\n" being a backslash and an n.
QString DefaultReplyHeader();
/// "yyyy/mm/dd hh:nn".
QString DefaultDateFormat();

/// Fills the settings from the section "Option". A missing, unreadable or out-of-range value silently takes its
/// default. A board that is not shown gives way to the first shown one, which takes an open database; without one
/// BBS_ID is 0.
void ReadSettings(Application& App);

/// Stores the settings into the section "Option" and saves it. False when the file could not be written; the values are
/// then in memory all the same.
bool WriteSettings(Application& App);

/// Makes the three entries of the web-search menu where the file has no section "WebSearch"; an empty section stays
/// empty. Saves the section, false when that failed.
bool InitWebSearchList(Application& App);

/// Gives the three folder settings their trailing separator and offers to make the folders that are missing.
/// True when all three exist or were to be made.
bool CheckFolders(Application& App);

/// Asks whether the missing Folder, called Label in the question, shall be made, and makes it. True unless the answer
/// was No; a folder that could not be made is not reported.
bool EnsureFolder(Application& App, const QString& Folder, const QString& Label);

/// Text percent-encoded in code page 932 for a web-search address.
QString URLEncode(const QString& Text);

} // namespace mdlSettings

#endif // APP_SETTINGS_H
