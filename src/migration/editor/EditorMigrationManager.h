#pragma once

#include "migration/AbstractMigrationManager.h"

namespace DataAccess::Manager {

/// Migrates the tables of the cable network, of its ratings and of its links to the cable book.
class DATAACCESS_EXPORT EditorMigrationManager : public AbstractMigrationManager
{
    Q_OBJECT

public:
    /// Has no worker yet: see setDbWorker().
    explicit EditorMigrationManager(QObject* parent = nullptr);
    ~EditorMigrationManager() override;

    /// Begins without messages: migrationMessages() returns those of the last call.
    bool Migrate() override;

    /**
     * Whether the cable network in @p db was written by a newer build, whose rows this one must not add to. For use
     * inside jobs. Throws when the database cannot be read.
     */
    static bool isNewerThanThisBuild(Interfaces::IDatabase& db);

private:
    using AbstractMigrationManager::createTable;
    using AbstractMigrationManager::setDbVersion;

    const MigrationModule& module() const override;
    QVector<Step> steps() override;
    void requireCredible(MigrationStep& step, quint32 version) override;

    /// Creates the first layout of the cable network. Cable tables without a version are discarded.
    bool Cables_01();
    /// Stations get a description and an image, segments a detail each, cables a type; voltages become volts.
    bool Cables_02();
    /// Segments get a date of installation.
    bool Cables_03();
    /// Segments of one insulation share its default detail.
    bool Cables_04();
    /// Creates the table of evaluations.
    bool Evaluation_01();
    /// Creates the table of ratings and moves the evaluations there.
    bool Evaluation_02();
    /// Cables get an importance. Creates the links to the cable book.
    bool Cables_05();
    /// Deletes unused segment details.
    bool Cables_06();
    /// Deletes unused switchgear.
    bool Cables_07();

    /// Turns the integer ids of a table into identifiers; others stay. Returns the number of failures, which are
    /// logged.
    unsigned int setUuidAsId(Interfaces::IDatabase& db, const QString& tableName);
    void copyEvaluations(MigrationStep& step);
};

} // namespace DataAccess::Manager
