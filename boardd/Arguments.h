// boardd/Arguments.h
// The server's command line.

#ifndef BOARDD_ARGUMENTS_H
#define BOARDD_ARGUMENTS_H

#include "boardd/CBoardServer.h"

/// What the command line asks for.
struct CArguments
{
    CBoardServerOptions Options;
    bool Help = false;
    QString Error; ///< what is wrong with the command line, in Japanese; empty when nothing is
};

namespace mdlArguments
{

/// Reads the words after the program's name: "--port 8000" as well as "--port=8000". Without words: the default port, and
/// posts in the user's data folder.
CArguments Parse(const QStringList& Words);

/// The text of --help.
QString HelpText();

} // namespace mdlArguments

#endif
