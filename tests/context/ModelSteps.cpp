#include "context/ModelRun.h"

#include <random>

namespace TestSupport {

ModelSteps randomSteps(unsigned int seed, int count)
{
    // How often each comes. A row that is missing and a text that cannot be stored do not come together: which of them
    // is met first in a batch is open.
    const QString common = QStringLiteral(
        "make child child attach attach attach edit edit edit edit state state state link link link detach id "
        "save save save save save reload more more write break break reopen");
    QStringList names = common.split(QLatin1Char(' '));
    const bool hasRemovals = seed % 2 == 0;
    if (hasRemovals)
        names << QStringLiteral("remove") << QStringLiteral("remove");
    // The generator's numbers are fixed by the standard, those of the distributions are not.
    std::mt19937 numbers(seed);
    // Most begin with one of each kind, linked; by chance that takes long.
    ModelSteps steps;
    if (seed % 3 != 0)
        steps = stepsFromText(
            QStringLiteral("make 0 1; make 1 1; make 2 1; link 1 1; link 2 1; attach 1 0; attach 2 0; save 0 0"));
    for (int i = 0; i < count; ++i) {
        ModelStep step;
        step.name = names[int(numbers() % unsigned(names.size()))];
        step.first = int(numbers() % 1000);
        step.second = int(numbers() % 1000);
        if (hasRemovals && step.name == QLatin1String("edit") && step.second % 12 == 0)
            ++step.second;
        steps.push_back(step);
    }
    return steps;
}

ModelSteps stepsFromText(const QString& text)
{
    ModelSteps steps;
    for (const QString& line : text.split(QStringLiteral("; "))) {
        const QStringList words = line.split(QLatin1Char(' '));
        steps.push_back({words.value(0), words.value(1).toInt(), words.value(2).toInt()});
    }
    return steps;
}

QString textFromSteps(const ModelSteps& steps)
{
    QStringList lines;
    for (const ModelStep& step : steps)
        lines << QStringLiteral("%1 %2 %3").arg(step.name).arg(step.first).arg(step.second);
    return lines.join(QStringLiteral("; "));
}

ModelSteps shrunk(ModelFamily& family, ModelSteps steps)
{
    for (size_t length = steps.size() / 2; length > 0; length /= 2) {
        for (size_t from = 0; from + length <= steps.size();) {
            ModelSteps fewer = steps;
            fewer.erase(fewer.begin() + long(from), fewer.begin() + long(from + length));
            if (runModel(family, fewer).isEmpty())
                from += length;
            else
                steps = fewer;
        }
    }
    return steps;
}

} // namespace TestSupport
