// Prints the current schema as a graph for Graphviz: the tables that the migrations lead to, and what refers to what.

#include "transfer/private/SchemaTables.h"

#include <QTextStream>

#include <cstdio>
#include <stdexcept>

using namespace DataAccess;
using Transfer::SchemaColumn;
using Transfer::SchemaReference;
using Transfer::SchemaTable;

namespace {

QString kindOf(const SchemaColumn& column)
{
    if (column.isImage)
        return QStringLiteral("image");
    switch (column.kind) {
    case Enumerations::Integer:
        return QStringLiteral("integer");
    case Enumerations::Boolean:
        return QStringLiteral("boolean");
    case Enumerations::Numeric:
        return QStringLiteral("number");
    case Enumerations::TimeStamp:
        return QStringLiteral("date and time");
    case Enumerations::Date:
        return QStringLiteral("date");
    case Enumerations::ByteArray:
        return QStringLiteral("bytes");
    case Enumerations::Text:
        return QStringLiteral("text");
    default:
        throw std::logic_error("a kind of column that no table of the schema had before");
    }
}

QString nodeOf(const SchemaTable& table)
{
    QString rows = QStringLiteral("<tr><td colspan=\"2\" bgcolor=\"#d8e4f0\"><b>%1</b></td></tr>").arg(table.name);
    for (const SchemaColumn& column : table.columns) {
        const QString name = column.name == table.key ? QStringLiteral("<u>%1</u>").arg(column.name) : column.name;
        rows +=
            QStringLiteral("<tr><td align=\"left\" port=\"%1\">%2</td><td align=\"left\" port=\"from_%1\">%3</td></tr>")
                .arg(column.name, name, kindOf(column));
    }
    return QStringLiteral("%1 [label=<<table border=\"0\" cellborder=\"1\" cellspacing=\"0\">%2</table>>]")
        .arg(table.name, rows);
}

QString edgeOf(const SchemaTable& table, const SchemaReference& reference)
{
    const QString head = reference.isList ? QStringLiteral("crow") : QStringLiteral("normal");
    return QStringLiteral("%1:from_%2:e -> %3:%4:w [arrowhead=%5]")
        .arg(table.name, reference.column, reference.table, Transfer::schemaTable(reference.table)->key, head);
}

} // namespace

int main()
{
    QTextStream out(stdout);
    out << "digraph schema {\nrankdir=LR; ranksep=1.5;\n"
           "node [shape=plain, fontname=\"Helvetica\", fontsize=10]; edge [color=\"#5070a0\"];\n";
    for (const SchemaTable& table : Transfer::schemaTables()) {
        out << nodeOf(table) << ";\n";
        for (const SchemaReference& reference : table.references)
            out << edgeOf(table, reference) << ";\n";
    }
    out << "}\n";
    return 0;
}
