// tests/support/CReadOnlyUser.h
// File rights that hold even where tests run as root.

#ifndef SUPPORT_CREADONLYUSER_H
#define SUPPORT_CREADONLYUSER_H

#include <unistd.h>

/// While it lives, files are reached as a user without special rights. For any other user than root it does nothing.
class CReadOnlyUser
{
public:
    CReadOnlyUser()
    {
        if (m_user == 0 && seteuid(Nobody) != 0)
            m_user = Nobody;
    }
    ~CReadOnlyUser()
    {
        if (m_user == 0 && seteuid(0) != 0)
            _exit(1);
    }
    CReadOnlyUser(const CReadOnlyUser&) = delete;
    CReadOnlyUser& operator=(const CReadOnlyUser&) = delete;

private:
    static constexpr uid_t Nobody = 65534;
    uid_t m_user = geteuid();
};

#endif
