#pragma once

#include <QFile>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace TestSupport {

/// Another process that holds a file locked, as one that writes to an SQLite database does, while the object lives.
class FileLocker
{
public:
    explicit FileLocker(const QString& path)
    {
        const QByteArray file = QFile::encodeName(path);
        int ready[2];
        if (pipe(ready) != 0 || (m_process = fork()) < 0)
            qFatal("no process to lock a file with");
        char held = 0;
        if (m_process == 0) {
            // Nothing but system calls: the threads of the parent, and whatever they had locked, are not here.
            struct flock wholeFile = {};
            wholeFile.l_type = F_WRLCK;
            held = fcntl(open(file.constData(), O_RDWR), F_SETLK, &wholeFile) == 0 ? 1 : 0;
            if (write(ready[1], &held, 1) == 1)
                pause();
            _exit(0);
        }
        m_held = read(ready[0], &held, 1) == 1 && held == 1;
        close(ready[0]);
        close(ready[1]);
    }
    ~FileLocker()
    {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    FileLocker(const FileLocker&) = delete;
    FileLocker& operator=(const FileLocker&) = delete;

    /// Whether the process has the lock.
    bool isHeld() const { return m_held; }

private:
    pid_t m_process = -1;
    bool m_held = false;
};

} // namespace TestSupport
