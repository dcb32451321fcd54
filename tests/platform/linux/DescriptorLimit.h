// SPDX-License-Identifier: MIT

#pragma once

#include <sys/resource.h>
#include <unistd.h>

/// As long as the object lives, this process can open no more than this.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(int more)
    {
        const int next = ::dup(STDOUT_FILENO);
        ::close(next);
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit limit{static_cast<rlim_t>(next + more), before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit before{};
};
