// app/Result.h
// How something that the world may refuse (a locked file, a full disk) comes back to its caller.

#ifndef APP_RESULT_H
#define APP_RESULT_H

#include <QString>

#include <utility>

/// Done, or not done with a sentence in the user's language that says why.
class [[nodiscard]] CResult
{
public:
    static CResult Ok() { return {}; }
    static CResult Failed(QString Message) { return CResult(false, std::move(Message)); }

    explicit operator bool() const { return m_isOk; }
    /// Empty when done.
    const QString& Message() const { return m_message; }

    /// Puts what was being done in front of the reason; a success stays as it is.
    CResult While(const QString& Doing) const
    {
        return m_isOk ? *this : Failed(m_message.isEmpty() ? Doing : Doing + u'\n' + m_message);
    }

private:
    CResult() = default;
    CResult(bool IsOk, QString Message)
        : m_isOk(IsOk)
        , m_message(std::move(Message))
    {}

    bool m_isOk = true;
    QString m_message;
};

#endif // APP_RESULT_H
