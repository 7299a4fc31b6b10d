#pragma once

#include <QLockFile>
#include <QString>

/**
 * A file that appears whole under its name or not at all: it is written under another name, which a second run of this
 * program cannot use meanwhile.
 */
class NewFile
{
public:
    /// What becomes of the unfinished file when it is not published.
    enum class Leftover { Removed, Kept };

    /// Throws ToolError when there is a file already, unless @p isForced, and when another run is writing the same one.
    NewFile(const QString& path, bool isForced, Leftover leftover = Leftover::Removed);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Where the file is written.
    const QString& unfinished() const { return m_unfinished; }
    /// Removes what an earlier run has left behind, and makes an empty file that only those may read who may read
    /// @p original, if that is there.
    void begin(const QString& original = {}) const;
    /// Flushes the file and gives it its name. Throws ExecutionException.
    void publish();

private:
    QString m_path;
    QString m_unfinished;
    QLockFile m_lock;
    bool m_isForced;
    Leftover m_leftover;
};
