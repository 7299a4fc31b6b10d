#include "factories/SharedChild.h"

namespace DataAccess::Factories {

void keepFromDeletion(QObject& child)
{
    if (child.parent() == nullptr)
        return;
    // An object says that it is destroyed before it deletes its children. Queued, the message would come too late.
    QObject::connect(
        child.parent(), &QObject::destroyed, &child, [&child] { child.setParent(nullptr); }, Qt::DirectConnection);
}

} // namespace DataAccess::Factories
