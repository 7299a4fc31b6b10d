#pragma once

#include <string_view>

/// What the compiler checks in the text of a statement.
namespace DataAccess::Repositories::StatementText {

constexpr bool isWordCharacter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// The word that @p text begins with.
constexpr std::string_view firstWord(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && isWordCharacter(text[length]))
        ++length;
    return text.substr(0, length);
}

/// The word that @p text ends with, whatever stands behind it.
constexpr std::string_view lastWord(std::string_view text)
{
    while (!text.empty() && !isWordCharacter(text.back()))
        text.remove_suffix(1);
    std::size_t begin = text.size();
    while (begin > 0 && isWordCharacter(text[begin - 1]))
        --begin;
    return text.substr(begin);
}

/// The part of a comma-separated @p list at @p index, without blanks around it; empty behind the last one.
constexpr std::string_view part(std::string_view list, int index)
{
    for (; index > 0 && !list.empty(); --index) {
        const std::size_t comma = list.find(',');
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    list = list.substr(0, list.find(','));
    while (!list.empty() && list.front() == ' ')
        list.remove_prefix(1);
    while (!list.empty() && list.back() == ' ')
        list.remove_suffix(1);
    return list;
}

/// The column at @p index of a SELECT; a column of the first one's table without the alias of that table.
constexpr std::string_view selected(std::string_view statement, int index)
{
    constexpr std::string_view keyword = "SELECT";
    const std::string_view list = statement.substr(keyword.size(), statement.find(" FROM ") - keyword.size());
    const std::string_view first = part(list, 0);
    const std::string_view alias = first.substr(0, first.find('.') + 1);
    std::string_view column = part(list, index);
    if (column.substr(0, alias.size()) == alias)
        column.remove_prefix(alias.size());
    return column;
}

/// Where a SELECT has @p column; -1 when it has not.
constexpr int positionOf(std::string_view statement, std::string_view column)
{
    for (int index = 0; !selected(statement, index).empty(); ++index) {
        if (selected(statement, index) == column)
            return index;
    }
    return -1;
}

/// Whether @p statement has the placeholder of @p column.
constexpr bool hasPlaceholder(std::string_view statement, std::string_view column)
{
    for (std::size_t at = statement.find(':'); at != std::string_view::npos; at = statement.find(':', at + 1)) {
        if (firstWord(statement.substr(at + 1)) == column)
            return true;
    }
    return false;
}

/// Whether an INSERT gives each column a literal or the placeholder of its own name.
constexpr bool insertsByName(std::string_view statement)
{
    const std::size_t end = statement.find(')');
    const std::size_t values = statement.find('(', end) + 1;
    const std::string_view columnList = statement.substr(statement.find('(') + 1, end - statement.find('(') - 1);
    const std::string_view valueList = statement.substr(values, statement.rfind(')') - values);
    for (int index = 0; !part(columnList, index).empty(); ++index) {
        const std::string_view value = part(valueList, index);
        if (value.empty() || (value.front() == ':' && value.substr(1) != part(columnList, index)))
            return false;
    }
    return true;
}

/// Whether an UPDATE gives, and compares, each column with the placeholder of its own name.
constexpr bool updatesByName(std::string_view statement)
{
    for (std::size_t at = statement.find(':'); at != std::string_view::npos; at = statement.find(':', at + 1)) {
        if (firstWord(statement.substr(at + 1)) != lastWord(statement.substr(0, at)))
            return false;
    }
    return true;
}

} // namespace DataAccess::Repositories::StatementText
