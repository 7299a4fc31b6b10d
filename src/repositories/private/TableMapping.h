#pragma once

#include "database/ValueConverter.h"
#include "entities/qor/Properties.h"
#include "repositories/private/EntityMapping.h"
#include "repositories/private/StatementText.h"

#include <array>
#include <functional>
#include <limits>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace DataAccess::Repositories {

/// Reads and binds a value of each type.
template <typename Value>
struct PlainForm
{
    static Value read(const Interfaces::IValueConverter& row, int position)
    {
        if constexpr (std::is_enum_v<Value>)
            return static_cast<Value>(row.toInt32(position));
        else if constexpr (std::is_same_v<Value, bool>)
            return row.toBool(position);
        else if constexpr (std::is_same_v<Value, int>)
            return row.toInt32(position);
        else if constexpr (std::is_same_v<Value, unsigned int>)
            return row.toUint(position);
        else if constexpr (std::is_same_v<Value, double>)
            return row.toDouble(position);
        else if constexpr (std::is_same_v<Value, QString>)
            return row.toString(position);
        else if constexpr (std::is_same_v<Value, QUuid>)
            return row.toUuid(position);
        else if constexpr (std::is_same_v<Value, QDate>)
            return row.toDate(position);
        else if constexpr (std::is_same_v<Value, QDateTime>)
            return row.toDateTime(position);
        else if constexpr (std::is_same_v<Value, QImage>)
            return row.toImage(position);
        else {
            Value value;
            row.value(value, position);
            return value;
        }
    }

    static void bind(Interfaces::IValueConverter& values, const QString& placeholder, const Value& value)
    {
        if constexpr (std::is_enum_v<Value>)
            values.bindValue(placeholder, static_cast<int>(value));
        else if constexpr (std::is_same_v<Value, QDateTime>)
            // Stored without a time zone and read as local time, and so written as local time too.
            values.bindValue(placeholder, value.toLocalTime());
        else
            values.bindValue(placeholder, value);
    }
};

/// An index that is refused when it is too large for the 32-bit columns of PostgreSQL, on every backend: SQLite would
/// store what can then not be brought to a server.
struct LimitedIndexForm : PlainForm<unsigned int>
{
    static void bind(Interfaces::IValueConverter& values, const QString& placeholder, unsigned int index)
    {
        if (index > static_cast<unsigned int>(std::numeric_limits<int>::max()))
            Converter::refuseValue("An index above 2147483647 cannot be stored", placeholder);
        values.bindValue(placeholder, index);
    }
};

/// A column, and the property that it holds.
template <auto getter, typename ValueForm>
struct Column
{
    using Form = ValueForm;
    static constexpr auto get = getter;

    const char* name;
};

/// The column @p name, which has a placeholder of the same name, for the property that @p getter gives.
template <auto getter, typename Form = PlainForm<typename QOR::Entities::GetterValue<decltype(getter)>::Type>>
constexpr auto column(const char* name)
{
    return Column<getter, Form>{name};
}

/// The getters of properties.
template <auto... getter>
struct Getters
{};

template <auto left, auto right>
inline constexpr bool isSameGetter =
    std::is_same_v<std::integral_constant<decltype(left), left>, std::integral_constant<decltype(right), right>>;

/**
 * What a table says of itself, in a struct that derives from this one: Entity, the statements getAll, getById, insert
 * and update, and the tuple `columns`. It may hide the names of the columns of the bookkeeping.
 */
struct EntityTable
{
    static constexpr char timestamp[] = "timestamp";
    static constexpr char deleted[] = "deleted";
    static constexpr char snap[] = "snap";
    /// Stored properties that have no column of their own: the mapping has functions for them.
    using Elsewhere = Getters<>;
};

/// The columns that a statement on a @p Table has beside the id.
template <typename Table>
constexpr auto columnNames()
{
    constexpr auto toArray = [](const auto&... column) {
        return std::array{std::string_view(column.name)..., std::string_view(Table::timestamp),
                          std::string_view(Table::deleted), std::string_view(Table::snap)};
    };
    return std::apply(toArray, Table::columns);
}

/// Whether all that a SELECT reads of the table is a property, the id or bookkeeping.
template <typename Table>
constexpr bool knowsAllSelected()
{
    for (int index = 0; !StatementText::selected(Table::getById, index).empty(); ++index) {
        const std::string_view selected = StatementText::selected(Table::getById, index);
        bool isKnown = selected == "id" || selected.find('.') != std::string_view::npos;
        for (const std::string_view name : columnNames<Table>())
            isKnown = isKnown || selected == name;
        if (!isKnown)
            return false;
    }
    return true;
}

/// Whether a SELECT has all columns, where getById has them.
template <typename Table>
constexpr bool hasAllColumns(std::string_view statement)
{
    for (const std::string_view name : columnNames<Table>()) {
        const int position = StatementText::positionOf(statement, name);
        if (position < 0 || position != StatementText::positionOf(Table::getById, name))
            return false;
    }
    return true;
}

/// Whether both SELECTs have. A getAll without a list of its own is given that of getById.
template <typename Table>
constexpr bool selectsAll()
{
    const bool hasNoList = StatementText::selected(Table::getAll, 0) == "%1";
    return hasAllColumns<Table>(Table::getById) && (hasNoList || hasAllColumns<Table>(Table::getAll));
}

/// Whether INSERT and UPDATE write all columns, each with its own placeholder.
template <typename Table>
constexpr bool writesAll()
{
    for (const std::string_view name : columnNames<Table>()) {
        if (!StatementText::hasPlaceholder(Table::insert, name) || !StatementText::hasPlaceholder(Table::update, name))
            return false;
    }
    return StatementText::insertsByName(Table::insert) && StatementText::updatesByName(Table::update);
}

template <auto getter, typename... Columns>
constexpr int holdersOf(const std::tuple<Columns...>& /*columns*/)
{
    return (0 + ... + int(isSameGetter<Columns::get, getter>));
}

template <auto getter, auto... other>
constexpr int holdersOf(Getters<other...> /*elsewhere*/)
{
    return (0 + ... + int(isSameGetter<other, getter>));
}

/// Whether each stored property has one place.
template <typename Table, typename... Properties>
constexpr bool holdsEach(const std::tuple<Properties...>& /*properties*/)
{
    constexpr auto holders = [](auto property) {
        constexpr auto get = decltype(property)::get;
        return holdersOf<get>(Table::columns) + holdersOf<get>(typename Table::Elsewhere());
    };
    return ((!Properties::isStored || holders(Properties()) == 1) && ...);
}

/// The property of a tuple that @p getter gives, as a tuple; an empty one when there is none.
template <auto getter, typename... Properties>
constexpr auto propertyOf(const std::tuple<Properties...>& /*properties*/)
{
    return std::tuple_cat(
        std::conditional_t<isSameGetter<Properties::get, getter>, std::tuple<Properties>, std::tuple<>>()...);
}

/**
 * The mapping of a @p Table: reads and binds the columns in the order in which the table lists them. What the texts of
 * the statements must hold is checked by the compiler: no column without a property, no stored property without a
 * column, and the positions are found in the SELECTs.
 */
template <typename Table>
class TableMapping : public EntityMapping<typename Table::Entity>
{
public:
    using Entity = typename Table::Entity;

    TableMapping()
        : m_placeholders(std::apply([](const auto&... column) { return Placeholders{placeholder(column.name)...}; },
                                    Table::columns))
    {
        static_assert(holdsEach<Table>(QOR::Entities::properties<Entity>), "A stored property needs one column");
        static_assert(selectsAll<Table>(), "Both SELECTs must have all columns, in the same order");
        static_assert(knowsAllSelected<Table>(), "A column of the SELECTs has no property");
        static_assert(writesAll<Table>(), "INSERT and UPDATE must give each column the placeholder of its name");
    }

    const Statements& statements() const override { return m_statements; }

    /// Reads all but the lazy properties.
    void read(const Interfaces::IValueConverter& row, const std::shared_ptr<Entity>& entity) const override
    {
        readIf<false>(row, *entity, Indices());
    }

    void bind(Interfaces::IValueConverter& values, const Entity& entity) const override
    {
        bindEach(values, entity, Indices());
    }

protected:
    /// Reads the lazy properties, which only the subclass knows to be in the row.
    void readLazy(const Interfaces::IValueConverter& row, Entity& entity) const
    {
        readIf<true>(row, entity, Indices());
    }

private:
    using Columns = std::decay_t<decltype(Table::columns)>;
    static constexpr std::size_t count = std::tuple_size_v<Columns>;
    using Indices = std::make_index_sequence<count>;
    using Placeholders = std::array<QString, count>;

    template <std::size_t index>
    static constexpr int position = StatementText::positionOf(Table::getById, std::get<index>(Table::columns).name);

    static QString placeholder(const char* column) { return QLatin1Char(':') + QLatin1String(column); }

    template <bool lazy, std::size_t... index>
    void readIf(const Interfaces::IValueConverter& row, Entity& entity, std::index_sequence<index...> /*all*/) const
    {
        (readColumn<lazy, index>(row, entity), ...);
    }

    template <bool lazy, std::size_t index>
    void readColumn(const Interfaces::IValueConverter& row, Entity& entity) const
    {
        using Held = std::tuple_element_t<index, Columns>;
        using Found = decltype(propertyOf<Held::get>(QOR::Entities::properties<Entity>));
        static_assert(std::tuple_size_v<Found> == 1, "A column holds no property of the entity");
        using Property = std::tuple_element_t<0, Found>;
        if constexpr ((Property::kind == QOR::Entities::PropertyKind::Lazy) == lazy)
            std::invoke(Property::set, entity, Held::Form::read(row, position<index>));
    }

    template <std::size_t... index>
    void bindEach(Interfaces::IValueConverter& values, const Entity& entity,
                  std::index_sequence<index...> /*all*/) const
    {
        (std::tuple_element_t<index, Columns>::Form::bind(
             values, m_placeholders[index], std::invoke(std::tuple_element_t<index, Columns>::get, entity)),
         ...);
    }

    const Statements m_statements = {QString::fromLatin1(Table::getAll),
                                     QString::fromLatin1(Table::getById),
                                     QString::fromLatin1(Table::insert),
                                     QString::fromLatin1(Table::update),
                                     {StatementText::positionOf(Table::getById, Table::timestamp),
                                      StatementText::positionOf(Table::getById, Table::deleted),
                                      StatementText::positionOf(Table::getById, Table::snap)}};
    const Placeholders m_placeholders;
};

} // namespace DataAccess::Repositories
