// sqlshell/Arguments.h
// The shell's command line.

#ifndef SQLSHELL_ARGUMENTS_H
#define SQLSHELL_ARGUMENTS_H

#include <QByteArrayList>
#include <QString>

#include <utility>
#include <vector>

namespace sqlshell
{

enum class Format { Table, Csv, Json };

/// What the command line asks for.
struct COptions
{
    QString File;
    QByteArrayList Statements; ///< as typed; when there are none they are read from standard input
    std::vector<std::pair<QString, QString>> Parameters; ///< names with their values as typed
    Format Output = Format::Table;
    int MaxWidth = 40;      ///< widest column of a table in columns of the terminal, 0 for no limit
    bool TypeOnly = false;  ///< tell types instead of running
    bool Create = false;    ///< make the file, which must not exist
    bool SkipsRows = false; ///< rows that break a rule are left out instead of refusing the statement
    bool Help = false;
    bool Version = false;
    QString Error; ///< what is wrong with the command line, in Japanese; empty when nothing is
};

namespace mdlArguments
{

/// Reads the words after the program's name. Options may stand anywhere; after "--" there are none.
COptions Parse(const QByteArrayList& Words);

/// The text of --help.
QString HelpText();
/// The text of --version.
QString VersionText();

} // namespace mdlArguments
} // namespace sqlshell

#endif
