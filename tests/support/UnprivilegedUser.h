#pragma once

#include <grp.h>
#include <unistd.h>

namespace TestSupport {

/// Makes the process one of an ordinary user while it lives: no file permission stops the administrator.
class UnprivilegedUser
{
public:
    UnprivilegedUser()
        : m_group(getgid())
        , m_changed(geteuid() == 0 && setgroups(0, nullptr) == 0 && setresgid(s_nobody, s_nobody, m_group) == 0 &&
                    setresuid(s_nobody, s_nobody, 0) == 0)
    {}
    ~UnprivilegedUser()
    {
        if (m_changed && (setresuid(0, 0, 0) != 0 || setresgid(m_group, m_group, m_group) != 0))
            _exit(1);
    }
    UnprivilegedUser(const UnprivilegedUser&) = delete;
    UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;

private:
    static constexpr uid_t s_nobody = 65534;

    const gid_t m_group;
    const bool m_changed;
};

} // namespace TestSupport
