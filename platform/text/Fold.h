// platform/text/Fold.h
// The equality and the order of Japanese text: letter case, width and the two kana do not count.

#ifndef TEXT_FOLD_H
#define TEXT_FOLD_H

#include <QByteArray>
#include <QString>

#include <vector>

namespace text
{

/// A folded text and the way back to the text that it came from.
struct CFoldedText
{
    QString Text;

    /// Offsets[i] is the UTF-16 unit of the source where unit i of Text begins; one more entry holds the source's
    /// length. Never descending.
    std::vector<qsizetype> Offsets;
};

/// The one normal form of everything that reads the same: small letters, half-width ASCII, full-width katakana.
///
/// A half-width kana and the voicing mark after it become the one composed letter (ｶﾞ is ガ). Kept apart are か and が,
/// つ and っ, ー and a hyphen, accents, ① and 1, trailing blanks and their absence. The look-alikes 〜 − ‖ — count as
/// the ～ － ∥ ― that the boards' code page has, or a search typed outside Windows would never find them. Text that is
/// in that form already comes back as it is; ASCII never takes more than one pass.
QString Fold(QStringView Text);

/// As above; shares Text's own memory when there is nothing to fold.
QString Fold(const QString& Text);

/// Fold together with the map back to Text, for places of matches.
CFoldedText FoldWithOffsets(QStringView Text);

/// Whether Fold(Text) would give Text, without making it.
bool IsFolded(QStringView Text);

/// Whether both texts have the same fold.
bool EqualText(QStringView Left, QStringView Right);

/// -1, 0 or 1 by the units of the folds. Means nothing to a reader, but is many times cheaper than CompareText and has the
/// same equality: for finding what is alike among many texts.
int CompareFolds(QStringView Left, QStringView Right);

/// -1, 0 or 1; 0 exactly when the folds are equal. The order is ICU's Japanese one: symbols, digits, Latin, kana,
/// kanji.
int CompareText(QStringView Left, QStringView Right);

/// Bytes whose memcmp order (a shorter one that is a prefix first) is the order of CompareText.
QByteArray SortKey(QStringView Text);

} // namespace text

#endif // TEXT_FOLD_H
