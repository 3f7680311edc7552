#pragma once
#include <csignal>
#include <sys/resource.h>

// While it lives, every file this process and its children write may hold
// `bytes` at most: a disk that fills up, made real for one scope.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        struct rlimit lim = m_old;
        lim.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &lim);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    struct rlimit m_old;
};
