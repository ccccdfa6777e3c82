// boardd/CFields.h
// Named values that a visitor sent: a query string, or a posted form in either encoding.

#ifndef BOARDD_CFIELDS_H
#define BOARDD_CFIELDS_H

#include <QByteArrayList>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

/// Names and values are raw bytes as sent; where a name comes twice the first one counts. All reading is linear in the input.
class CFields
{
public:
    /// More fields than this are not kept; no form of ours has nearly as many.
    static constexpr std::size_t MaxFields = 64;

    /// Reads "&l_or_r=0&dousa=log&logno=1": empty pairs are skipped, a pair without "=" has an empty value.
    static CFields FromUrlEncoded(QByteArrayView Text);
    /// Reads the body of a posted form whose Content-Type is ContentType. Nullopt when it is neither urlencoded nor
    /// multipart, or when a multipart body is not well-formed. Uploaded files count as values.
    static std::optional<CFields> FromForm(QByteArrayView Body, QByteArrayView ContentType);

    bool Has(QByteArrayView Name) const;
    /// Empty when absent.
    QByteArray Bytes(QByteArrayView Name) const;
    /// The value as text: code page 932, or UTF-8 where the field "_charset_" says so or where it can be nothing else.
    QString Text(QByteArrayView Name) const;
    /// The value as a number written in ASCII digits, 0 to 2,147,483,647; nullopt for anything else.
    std::optional<qint32> Number(QByteArrayView Name) const;

private:
    void Add(QByteArray Name, QByteArray Value);

    std::vector<std::pair<QByteArray, QByteArray>> m_fields;
};

#endif
