#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/** Lets permissions hold for this thread even when it runs as root. */
class WithoutRootPowers
{
public:
    WithoutRootPowers()
    {
        ::syscall(SYS_capget, &m_header, m_before);
        __user_cap_data_struct reduced[2] = {m_before[0], m_before[1]};
        reduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
        ::syscall(SYS_capset, &m_header, reduced);
    }
    ~WithoutRootPowers() { ::syscall(SYS_capset, &m_header, m_before); }
    WithoutRootPowers(const WithoutRootPowers &) = delete;
    WithoutRootPowers &operator=(const WithoutRootPowers &) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2]{};
};
