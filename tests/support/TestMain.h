#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace TestSupport {

/// Adds a test class to those that the executable runs.
bool registerTest(std::function<std::unique_ptr<QObject>()> create);

} // namespace TestSupport

/// Makes the executable run the Qt Test class @p TestClass; stands in the class's source file.
#define DATAACCESS_TEST(TestClass)                                                                                     \
    static const bool registered##TestClass =                                                                          \
        TestSupport::registerTest([]() -> std::unique_ptr<QObject> { return std::make_unique<TestClass>(); });
