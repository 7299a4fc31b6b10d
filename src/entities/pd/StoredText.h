#pragma once

#include <QString>

namespace PD::Entities {

/**
 * The text to store for @p value in the text form @p Form (with toText() and fromText()): @p stored itself while it
 * stands for an equal value, so that a row whose text was written in another way stays as it is.
 */
template <typename Form, typename Value>
QString storedText(const QString& stored, const Value& value)
{
    const QString text = Form::toText(value);
    return Form::toText(Form::fromText(stored)) == text ? stored : text;
}

} // namespace PD::Entities
