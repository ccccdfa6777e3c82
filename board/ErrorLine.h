// board/ErrorLine.h
// How a receive words an error that has a number.

#ifndef BOARD_ERRORLINE_H
#define BOARD_ERRORLINE_H

#include <QString>

namespace mdlErrorLine
{

/// "Error(3260):他でロックされています。"
inline QString Numbered(int Number, const QString& Description)
{
    return QStringLiteral("Error(") + QString::number(Number) + QStringLiteral("):") + Description;
}

} // namespace mdlErrorLine

#endif // BOARD_ERRORLINE_H
