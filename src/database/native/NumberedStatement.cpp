#include "database/native/NumberedStatement.h"

#include <QRegularExpression>

#include <algorithm>

namespace DataAccess::Database::Native {

NumberedStatement::NumberedStatement(const QString& statement)
{
    // Quoted texts and names, and casts, are passed over.
    static const QRegularExpression pattern(QStringLiteral(R"('[^']*'|"[^"]*"|::|(:[A-Za-z_]\w*))"));
    int done = 0;
    for (auto match = pattern.globalMatch(statement); match.hasNext();) {
        const QRegularExpressionMatch parameter = match.next();
        const QString name = parameter.captured(1);
        if (name.isEmpty())
            continue;
        auto known = std::find(names.begin(), names.end(), name);
        if (known == names.end())
            known = names.insert(names.end(), name);
        text += statement.midRef(done, parameter.capturedStart() - done) + QLatin1Char('$') +
                QString::number(known - names.begin() + 1);
        done = parameter.capturedEnd();
    }
    text += statement.midRef(done);
}

} // namespace DataAccess::Database::Native
