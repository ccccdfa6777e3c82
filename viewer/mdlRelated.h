// viewer/mdlRelated.h
// Which message a text like "#123" or "質問板45" means, and the statements that find its thread.

#ifndef VIEWER_MDLRELATED_H
#define VIEWER_MDLRELATED_H

#include <QString>

#include <optional>

namespace mdlRelated
{

/// A message as people name it in their texts.
struct Reference
{
    QString BoardName; ///< a part of a board's name or short name; empty: the board at hand
    qint32 Number = 0;

    bool operator==(const Reference& Other) const = default;
};

/// Name and number stand apart at the first "#", else at the first blank, else before the first digit; sign, blank and
/// digits may be full-width, as the input method leaves them. Empty when what follows is no whole number of 32 bits.
std::optional<Reference> Parse(const QString& Text);

/// The boards whose name or short name holds Name, whatever letters that is made of.
QString BoardsNamed(const QString& Name);

/// The messages of the thread that the message belongs to. Threads of other boards with the same root number come
/// along: a two-sided board is two boards whose answers go from one side to the other.
QString ThreadOf(qint32 BBS_ID, qint32 Number);

} // namespace mdlRelated

#endif // VIEWER_MDLRELATED_H
