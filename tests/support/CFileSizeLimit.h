// tests/support/CFileSizeLimit.h
// A disk that takes no more, for tests of what becomes of a file then.

#ifndef SUPPORT_CFILESIZELIMIT_H
#define SUPPORT_CFILESIZELIMIT_H

#include <csignal>
#include <sys/resource.h>

/// While it lives, no file of this process can be written beyond so many bytes; the write fails as on a full disk.
class CFileSizeLimit
{
public:
    explicit CFileSizeLimit(rlim_t Bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the failing write is to be noticed, not the program to be ended
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{Bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};

#endif
