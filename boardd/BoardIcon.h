// boardd/BoardIcon.h
// The little picture of a board on its pages.

#ifndef BOARDD_BOARDICON_H
#define BOARDD_BOARDICON_H

#include <QByteArray>

namespace mdlBoardIcon
{

/// A PNG of 32 × 32 pixels: a leaf on a transparent ground, of a colour of its own for each Index from 0.
QByteArray Png(int Index);

} // namespace mdlBoardIcon

#endif
