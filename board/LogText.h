// board/LogText.h
// Bytes of a saved log made into the text that the boards' own pages have.

#ifndef BOARD_LOGTEXT_H
#define BOARD_LOGTEXT_H

#include <QByteArray>
#include <QString>

#include <functional>

namespace mdlLogText
{

/// Decodes Bytes: by the byte order mark when there is one (UTF-8, UTF-16), as UTF-8 when it is that and no code page
/// 932, else as code page 932. Where separator lines end in a bare LF or CR and none in CR LF, all line ends become CR
/// LF. The mark 1A that old systems put at the end of a text is taken out.
///
/// Takes Bytes over so that the memory is free as soon as possible. GoesOn is asked about once a megabyte; when it says
/// no, the text is empty.
QString Decode(QByteArray Bytes, const std::function<bool()>& GoesOn = {});

/// Whether Text has a separator line, that is at least one whole record.
bool HasRecord(QStringView Text);

/// The part of damaged Bytes that can be trusted, in whole lines: all up to the last line end where they are only cut
/// short; where something in them is wrong, up to the first line that no text has. A damaged member of an archive comes
/// out right up to the damage and as noise behind it, and what is stored from the noise would keep the true message out
/// for good.
QByteArray SoundPart(const QByteArray& Bytes, bool IsOnlyCut);

} // namespace mdlLogText

#endif
