#pragma once

#include <QByteArray>

namespace Cables::Entities {

/// FNV-1a hash, 32 bits, of all bytes added: the same on every machine and in every run.
class Fingerprint
{
public:
    void add(const QByteArray& bytes)
    {
        for (const char byte : bytes)
            m_value = (m_value ^ static_cast<unsigned char>(byte)) * 16777619U;
    }
    unsigned int value() const { return m_value; }

private:
    unsigned int m_value = 2166136261U;
};

} // namespace Cables::Entities
