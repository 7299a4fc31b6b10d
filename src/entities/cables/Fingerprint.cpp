#include "entities/cables/Fingerprint.h"

namespace Cables::Entities {

void Fingerprint::add(const QByteArray& bytes)
{
    for (const char byte : bytes)
        m_value = (m_value ^ static_cast<unsigned char>(byte)) * 16777619U;
}

} // namespace Cables::Entities
